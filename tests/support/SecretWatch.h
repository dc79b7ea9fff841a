#pragma once

#include <QByteArray>
#include <QString>

namespace Norlis::Test {

/// Whether a text gives away a password of FaultServer's: the beginning that all of them share, as it is, in base64 at
/// whatever position, percent-encoded, or in hexadecimal.
///
/// A program with this file in it fails every test that lets one out through what Client was told of failures, through
/// Qt's log with all of our categories switched on, or through its output and that of the processes that it starts.
bool HoldsSecret(const QByteArray& text);

/// What Qt's log holds of the test that runs.
QByteArray WatchedLog();

/// Looks into all files below a folder, and at their names.
void ExpectNoSecretBelow(const QString& folder);

} // namespace Norlis::Test

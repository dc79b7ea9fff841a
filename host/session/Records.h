#pragma once

#include <contracts/FileInfo.h>

#include <QString>

namespace Norlis::Host {

// Of a document's record, whose own getters are not const.

QString IdOf(const PDF::FileInfo& record);

/// The name of the cloud copy.
QString NameOf(const PDF::FileInfo& record);

// Between the paths of records and those of Qt.

ioPath ToPath(const QString& text);
QString ToText(const ioPath& path);

} // namespace Norlis::Host

#pragma once

#include <QSettings>

namespace Norlis::Host {

/// QSettings::IniFormat, for texts alone, but what could not be written whole is reported and leaves the file as it
/// was. Qt's own gives the file its name even when there was no room for the last part of it.
QSettings::Format WholeIniFormat();

} // namespace Norlis::Host

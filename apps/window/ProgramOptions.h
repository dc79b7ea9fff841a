#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace Norlis::Window {

/// What the program is for: a sentence.
QString ProgramPurpose();

/// Those of the program's own.
QList<QCommandLineOption> ProgramOptions();

} // namespace Norlis::Window

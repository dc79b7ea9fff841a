#pragma once

class QCoreApplication;
class QLocale;

namespace Norlis::Window {

/// Installs the translations for the locale; English is the default. To be called before the first text is shown.
void InstallTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace Norlis::Window

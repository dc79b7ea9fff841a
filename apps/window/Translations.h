#pragma once

class QCoreApplication;
class QLocale;

namespace Norlis::Window {

/// Makes the window speak the language of the locale, or English. To be called before the first text is shown.
void InstallTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace Norlis::Window

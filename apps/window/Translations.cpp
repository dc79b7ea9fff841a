#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

/// Without this call the linker drops the resource, because it is in a static library. Must not be inside a namespace.
static void LoadResource()
{
    Q_INIT_RESOURCE(translations);
}

namespace Norlis::Window {

namespace {

QString TranslationsOfQt()
{
#if QT_VERSION_MAJOR < 6
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}

} // namespace

void InstallTranslations(QCoreApplication& application, const QLocale& locale)
{
    LoadResource();
    const auto install = [&](const QLocale& language, const QString& name, const QString& folder) {
        const auto translator = new QTranslator(&application);
        if (translator->load(language, name, "_", folder)) {
            QCoreApplication::installTranslator(translator);
        }
    };
    const QString own = ":/translations";
    install(QLocale::English, "norlis-documents", own); // for its plurals
    install(locale, "qtbase", TranslationsOfQt());
    install(locale, "norlis-documents", own);
}

} // namespace Norlis::Window

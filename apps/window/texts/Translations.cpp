#include "Translations.h"

#include <QGuiApplication>
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

/// Texts that are read from the left are marked so in a mirrored window: otherwise "1 of 2" would be read "of 2 1".
QString Marked(const QString& text)
{
    const bool isMirrored = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    const bool isFilter = text.contains("(*"); // of a file dialog, which takes it apart
    const QChar mark(0x200E);
    return !isMirrored || isFilter || text.isEmpty() || text.isRightToLeft() ? text : mark + text + mark;
}

/// The texts of a language.
class DirectedTranslator : public QTranslator {
public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* source, const char* disambiguation, int n) const override
    {
        return Marked(QTranslator::translate(context, source, disambiguation, n));
    }
};

/// This program's own texts as they stand in its source, for those that have no translation.
class UntranslatedTexts : public QTranslator {
public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return *context == 'Q' ? QString() : Marked(QString::fromUtf8(source)); // classes of Qt
    }

    bool isEmpty() const override
    {
        return false;
    }
};

} // namespace

void InstallTranslations(QCoreApplication& application, const QLocale& locale)
{
    LoadResource();
    QCoreApplication::installTranslator(new UntranslatedTexts(&application)); // asked last
    const auto install = [&](QTranslator* translator, const QLocale& language, const QString& name,
                             const QString& folder) {
        if (translator->load(language, name, "_", folder)) {
            QCoreApplication::installTranslator(translator);
        }
    };
    const QString own = ":/translations";
    install(new DirectedTranslator(&application), QLocale::English, "norlis-documents", own); // for its plurals
    install(new QTranslator(&application), locale, "qtbase", TranslationsOfQt());
    install(new DirectedTranslator(&application), locale, "norlis-documents", own);
}

} // namespace Norlis::Window

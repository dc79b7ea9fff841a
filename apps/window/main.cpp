#include "MainWindow.h"
#include "Translations.h"

#include <apps/common/Interrupts.h>
#include <apps/common/LogFile.h>
#include <apps/common/ProgramStart.h>
#include <host/account/ServiceAddress.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLocale>
#include <QMessageBox>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace {

using namespace Norlis;

constexpr int usageError = 2;

int Run(const QString& dataFolder, const QUrl& service)
{
    const Apps::LogFile log(dataFolder + "/log", "norlis-documents");
    const Apps::Interrupts interrupts;
    Window::MainWindow window(dataFolder);
    QObject::connect(&interrupts, &Apps::Interrupts::Interrupted, &window, &Window::MainWindow::CloseWithoutAsking);
    if (service.isEmpty()) {
        window.Open();
    } else {
        window.OpenService(service);
    }
    window.show();
    return QApplication::exec();
}

/// Lets help and version be shown without a display.
void AllowHelpWithoutDisplay(int argc, char** argv)
{
    const auto isHelpOption = [](const char* argument) {
        return QStringList({"--help", "-h", "--help-all", "--version", "-v"}).contains(argument);
    };
    if (std::any_of(argv + 1, argv + argc, isHelpOption) && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

} // namespace

int main(int argc, char** argv)
{
    Apps::PrepareProgram("norlis-documents");
    AllowHelpWithoutDisplay(argc, argv);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName("norlis-documents");
    QCoreApplication::setApplicationVersion(NORLIS_VERSION);
    Window::InstallTranslations(application, QLocale());

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Shows and manages PDF documents in the cloud."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption data(
        "data", QCoreApplication::translate("main", "Folder for settings, the list of documents and previews."),
        "folder", QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    const QCommandLineOption service(
        "service",
        QCoreApplication::translate("main", "Folder or WebDAV server to sign in to (default: the last one)."), "url");
    parser.addOptions({data, service});
    parser.process(application);
    try {
        return Run(QDir().absoluteFilePath(parser.value(data)),
                   parser.isSet(service) ? Host::ServiceAddress(parser.value(service)) : QUrl());
    } catch (const std::invalid_argument& problem) {
        std::fprintf(stderr, "norlis-documents: %s\n", problem.what());
        return usageError;
    } catch (const std::runtime_error& problem) {
        QMessageBox::critical(nullptr, QCoreApplication::applicationName(), QString::fromUtf8(problem.what()));
        return EXIT_FAILURE;
    }
}

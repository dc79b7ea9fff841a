#include "MainWindow.h"
#include "ProgramOptions.h"
#include "SingleInstance.h"

#include <apps/common/Interrupts.h>
#include <apps/common/LogFile.h>
#include <apps/common/ProgramStart.h>
#include <apps/window/texts/ServiceTexts.h>
#include <apps/window/texts/Translations.h>
#include <apps/window/widgets/Glyphs.h>
#include <apps/window/widgets/PlainButtons.h>
#include <apps/window/widgets/Sharpness.h>
#include <contracts/Version.h>
#include <host/account/ServiceAddress.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace {

using namespace Norlis;

constexpr int usageError = 2;

int Run(const QString& dataFolder, const QUrl& service, const QStringList& files)
{
    Window::SingleInstance instance(dataFolder);
    if (!instance.IsFirst(files)) {
        return EXIT_SUCCESS;
    }
    const Apps::LogFile log(dataFolder + "/log", "norlis-documents");
    const Apps::Interrupts interrupts;
    Window::MainWindow window(dataFolder);
    QObject::connect(&interrupts, &Apps::Interrupts::Interrupted, &window, &Window::MainWindow::CloseWithoutAsking);
    QObject::connect(&instance, &Window::SingleInstance::Called, &window, [&window](const QStringList& handedOver) {
        window.ComeToFront();
        window.OfferUpload(handedOver);
    });
    if (service.isEmpty()) {
        window.Open();
    } else {
        window.OpenService(service);
    }
    window.show();
    window.OfferUpload(files);
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
    Window::UseAllPixels();
    QApplication application(argc, argv);
    QApplication::setStyle(new Window::PlainButtons);
    QCoreApplication::setApplicationName("norlis-documents");
    QGuiApplication::setDesktopFileName("org.norlis.Documents"); // by which desktops find the window's icon
    QCoreApplication::setApplicationVersion(NORLIS_CLOUD_VERSION_STR);
    QApplication::setWindowIcon(
        QIcon::fromTheme(QGuiApplication::desktopFileName(), Window::GlyphIcon(Window::Glyph::Cloud)));
    Window::InstallTranslations(application, QLocale());

    QCommandLineParser parser;
    parser.setApplicationDescription(Window::ProgramPurpose());
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(Window::ProgramOptions());
    parser.addPositionalArgument("files", QCoreApplication::translate("main", "PDF documents to upload."),
                                 "[files...]");
    parser.process(application);
    QStringList files;
    const auto operands = parser.positionalArguments();
    for (const QString& file : operands) {
        files.append(QFileInfo(file).absoluteFilePath());
    }
    try {
        return Run(QDir().absoluteFilePath(parser.value("data")),
                   parser.isSet("service") ? Host::ServiceAddress(parser.value("service")) : QUrl(), files);
    } catch (const std::invalid_argument& problem) {
        std::fprintf(stderr, "norlis-documents: %s\n", problem.what());
        return usageError;
    } catch (const std::runtime_error& problem) {
        QMessageBox::critical(nullptr, QCoreApplication::applicationName(),
                              Window::InUsersLanguage(QString::fromUtf8(problem.what())));
        return EXIT_FAILURE;
    }
}

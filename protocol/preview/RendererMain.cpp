// Renders pages of PDF documents for RendererProcess: takes requests from standard input and writes answers to
// standard output until the input ends. A process of its own, in a sandbox, because the documents may be hostile.

#include "PieceDevice.h"
#include "RenderedPage.h"
#include "RendererProtocol.h"
#include "Sandbox.h"

#include <QCoreApplication>
#include <QFile>
#include <QPainter>
#include <QPdfDocument>

#include <algorithm>

#include <unistd.h>

namespace {

using namespace Norlis::Social;

#if QT_VERSION_MAJOR < 6
constexpr auto noError = QPdfDocument::NoError;
constexpr auto incorrectPassword = QPdfDocument::IncorrectPasswordError;
constexpr auto unsupportedSecurityScheme = QPdfDocument::UnsupportedSecuritySchemeError;
constexpr auto invalidFileFormat = QPdfDocument::InvalidFileFormatError;
constexpr auto sizeOfPage = &QPdfDocument::pageSize;
#else
constexpr auto noError = QPdfDocument::Error::None;
constexpr auto incorrectPassword = QPdfDocument::Error::IncorrectPassword;
constexpr auto unsupportedSecurityScheme = QPdfDocument::Error::UnsupportedSecurityScheme;
constexpr auto invalidFileFormat = QPdfDocument::Error::InvalidFileFormat;
constexpr auto sizeOfPage = &QPdfDocument::pagePointSize;
#endif

QString ReasonOf(decltype(noError) error)
{
    switch (error) {
    case incorrectPassword:
        return "It is protected by a password";
    case unsupportedSecurityScheme:
        return "It is encrypted in a way that cannot be read";
    case invalidFileFormat:
        return "It is not a PDF document, or is damaged";
    default:
        return "It cannot be read";
    }
}

/// A null picture and the reason when there is nothing to show.
RenderedPage RenderPage(QIODevice& file, int page, const QSize& box, QString& reason)
{
    QPdfDocument document;
    document.load(&file);
    if (document.error() != noError) {
        reason = ReasonOf(document.error());
        return {};
    }
    const int pageCount = std::min(document.pageCount(), RendererProtocol::maxPages);
    if (page > 1 && page > pageCount) {
        reason = "There is no such page";
        return {};
    }
    QSizeF size = pageCount > 0 ? (document.*sizeOfPage)(page - 1) : QSizeF();
    if (!(size.width() > 0 && size.height() > 0)) {
        reason = "It has no page that can be shown";
        return {};
    }
    size.scale(box, Qt::KeepAspectRatio);
    const QImage drawn = document.render(page - 1, size.toSize().expandedTo({1, 1}).boundedTo(box));
    if (drawn.isNull()) {
        reason = "The page cannot be shown";
        return {};
    }
    // Where a page paints nothing it is transparent; paper is white.
    QImage picture(drawn.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    constexpr int strip = 64; // lines; for more at once Qt 6 waits for threads, which the sandbox does not allow
    for (int y = 0; y < drawn.height(); y += strip) {
        painter.drawImage(0, y, drawn, 0, y, drawn.width(), strip);
    }
    return {picture, pageCount};
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QPdfDocument keepsFontsLoaded; // they would be read anew whenever the last document is closed
    const bool isSafe = EnterSandbox();
    QFile output;
    if (!output.open(STDOUT_FILENO, QIODevice::WriteOnly)) {
        return 1;
    }
    QDataStream answers(&output);
    answers.setVersion(RendererProtocol::streamVersion);
    for (;;) {
        QFile file;
        const auto request = RendererProtocol::ReceiveRequest(STDIN_FILENO, file);
        if (!request) {
            _exit(0); // what a program tidies up at its end goes with the process, and needs more than it may do now
        }
        QString reason = QStringLiteral("Documents are not opened, because this kernel cannot filter system calls");
        PieceDevice pieces(request->size, answers, STDIN_FILENO);
        QIODevice& document = request->size > 0 ? static_cast<QIODevice&>(pieces) : file;
        const auto page = isSafe ? RenderPage(document, request->page, request->box, reason) : RenderedPage();
        const QImage& picture = page.image;
        if (picture.isNull()) {
            answers << RendererProtocol::refused << reason.toUtf8();
        } else {
            answers << RendererProtocol::rendered << static_cast<quint32>(page.pageCount)
                    << static_cast<quint32>(picture.width()) << static_cast<quint32>(picture.height())
                    << QByteArray::fromRawData(reinterpret_cast<const char*>(picture.constBits()),
                                               static_cast<int>(picture.sizeInBytes()));
        }
        output.flush();
    }
}

// Renders first pages of PDF documents for RendererProcess: reads requests from standard input and writes answers to
// standard output until the input ends. A process of its own because the documents may be hostile.

#include "RendererProtocol.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfDocument>

#include <csignal>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace Norlis::Social;

/// Gives up what rendering does not need, before the first document is opened.
void LimitProcess()
{
    const auto limit = [](auto resource, rlim_t maximum) {
        const rlimit value = {maximum, maximum};
        setrlimit(resource, &value);
    };
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0); // no file is written; pipes do not count
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_AS, rlim_t{2} * 1024 * 1024 * 1024); // sanitizers reserve far more
#endif
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

QString ReasonOf(QPdfDocument::DocumentError error)
{
    switch (error) {
    case QPdfDocument::IncorrectPasswordError:
        return "It is protected by a password";
    case QPdfDocument::UnsupportedSecuritySchemeError:
        return "It is encrypted in a way that cannot be read";
    case QPdfDocument::InvalidFileFormatError:
        return "It is not a PDF document, or is damaged";
    default:
        return "It cannot be read";
    }
}

/// A null picture and the reason when there is nothing to show.
QImage RenderFirstPage(const QString& path, const QSize& box, QString& reason)
{
    QPdfDocument document;
    const auto error = document.load(path);
    if (error != QPdfDocument::NoError) {
        reason = ReasonOf(error);
        return {};
    }
    QSizeF size = document.pageCount() > 0 ? document.pageSize(0) : QSizeF();
    if (!(size.width() > 0 && size.height() > 0)) {
        reason = "It has no page that can be shown";
        return {};
    }
    size.scale(box, Qt::KeepAspectRatio);
    const QImage page = document.render(0, size.toSize().expandedTo({1, 1}).boundedTo(box));
    if (page.isNull()) {
        reason = "Its first page cannot be shown";
        return {};
    }
    // Where a page paints nothing it is transparent; paper is white.
    QImage picture(page.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter(&picture).drawImage(0, 0, page);
    return picture;
}

} // namespace

int main(int argc, char** argv)
{
    LimitProcess();
    const QCoreApplication application(argc, argv);
    const QPdfDocument keepsFontsLoaded; // they would be read anew whenever the last document is closed
    QFile input;
    QFile output;
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        !output.open(STDOUT_FILENO, QIODevice::WriteOnly)) {
        return 1;
    }
    QDataStream requests(&input);
    QDataStream answers(&output);
    requests.setVersion(RendererProtocol::streamVersion);
    answers.setVersion(RendererProtocol::streamVersion);
    for (;;) {
        quint32 width = 0;
        quint32 height = 0;
        QByteArray path;
        requests >> width >> height >> path;
        if (requests.status() != QDataStream::Ok) {
            return 0;
        }
        QString reason;
        const QSize box(static_cast<int>(width), static_cast<int>(height));
        const QImage picture = RenderFirstPage(QString::fromUtf8(path), box, reason);
        if (picture.isNull()) {
            answers << RendererProtocol::refused << reason.toUtf8();
        } else {
            answers << RendererProtocol::rendered << static_cast<quint32>(picture.width())
                    << static_cast<quint32>(picture.height())
                    << QByteArray::fromRawData(reinterpret_cast<const char*>(picture.constBits()),
                                               static_cast<int>(picture.sizeInBytes()));
        }
        output.flush();
    }
}

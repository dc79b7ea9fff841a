// How long the previews of a folder of documents take, beside what the usual command-line renderer takes for the same
// documents one after the other. Both are measured in the same run, so that the ratio means something on any machine.
//
//   PreviewBenchmark [text documents, 1000] [scanned documents, 40]

#include <contracts/NorlisCloudProtocol.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPixmap>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace Norlis::Social;

using CloudFiles = QList<NorlisCloudProtocol::File::FileInfo>;

constexpr int edges[] = {40, 100, 191}; // those that the cloud manager asks for

void WriteTextDocument(const QString& path, int number)
{
    QPdfWriter writer(path);
    QPainter painter(&writer);
    const QString line = QStringLiteral("Document %1: words of which no other document has the like. ").arg(number);
    painter.drawText(QRect(0, 0, writer.width(), writer.height()), Qt::TextWordWrap, line.repeated(60));
}

/// A page of A4 as a scanner of 300 dots per inch delivers it.
void WriteScan(const QString& path, int number)
{
    QImage scan(2480, 3508, QImage::Format_RGB32);
    quint32 state = static_cast<quint32>(number);
    for (int y = 0; y < scan.height(); ++y) {
        auto line = reinterpret_cast<QRgb*>(scan.scanLine(y));
        for (int x = 0; x < scan.width(); ++x) {
            state = state * 1664525 + 1013904223;
            const int paper = 240 + static_cast<int>(state >> 28U) - ((x / 40 + y / 60) % 3 == 0 ? 150 : 0);
            line[x] = qRgb(paper, paper, paper);
        }
    }
    QPdfWriter writer(path);
    writer.setResolution(300);
    QPainter painter(&writer);
    painter.drawImage(QRect(0, 0, writer.width(), writer.height()), scan);
}

/// Seconds until the protocol has delivered three sizes of every document.
double SecondsOfProtocol(const QString& folder, const QString& cacheFolder)
{
    OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl::fromLocalFile(folder);
    authInfo.cacheFolder = cacheFolder;
    NorlisCloudProtocol protocol(authInfo, "benchmark");
    QEventLoop loop;
    CloudFiles files;
    protocol.auth({}, [&](qint64, RequestResult) {
        protocol.retriveFileList({}, [&](qint64, RequestResult, const CloudFiles& found) {
            files = found;
            loop.quit();
        });
    });
    loop.exec();

    QElapsedTimer timer;
    timer.start();
    int missing = 0;
    for (const auto& file : qAsConst(files)) {
        for (const int edge : edges) {
            ++missing;
            protocol.retrievePreview({{NorlisCloudProtocol::ID, file.id},
                                      {NorlisCloudProtocol::FILE_PREVIEW_WIDTH, QString::number(edge)},
                                      {NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, QString::number(edge)}},
                                     [&](qint64, RequestResult result, const QPixmap& picture) {
                                         if (result != Success || picture.isNull()) {
                                             std::fputs("a preview is missing\n", stderr);
                                             std::exit(1);
                                         }
                                         if (--missing == 0) {
                                             loop.quit();
                                         }
                                     });
        }
    }
    loop.exec();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// Seconds that the command-line renderer takes for one size of every document.
double SecondsOfCommand(const QString& folder, int count)
{
    QElapsedTimer timer;
    timer.start();
    for (int number = 0; number < count; ++number) {
        const QString path = QStringLiteral("%1/%2.pdf").arg(folder).arg(number);
        if (QProcess::execute("pdftoppm", {"-singlefile", "-scale-to", "191", "-png", path, path}) != 0) {
            std::fputs("pdftoppm fails; it comes with poppler-utils\n", stderr);
            std::exit(1);
        }
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

void Measure(const char* kind, int count, void (*write)(const QString&, int))
{
    const QTemporaryDir folder;
    const QTemporaryDir copy; // the command writes its pictures beside the documents
    const QTemporaryDir cache;
    for (int number = 0; number < count; ++number) {
        const QString name = QStringLiteral("/%1.pdf").arg(number);
        write(folder.path() + name, number);
        QFile::copy(folder.path() + name, copy.path() + name);
    }
    const double protocol = SecondsOfProtocol(folder.path(), cache.path());
    const double kept = SecondsOfProtocol(folder.path(), cache.path());
    const double command = SecondsOfCommand(copy.path(), count);
    std::printf("%4d %s: three sizes each %.2f s, again from the cache %.2f s, one size each by pdftoppm %.2f s, "
                "ratio %.2f\n",
                count, kind, protocol, kept, command, protocol / command);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const int texts = argc > 1 ? std::atoi(argv[1]) : 1000;
    const int scans = argc > 2 ? std::atoi(argv[2]) : 40;
    Measure("text documents", texts, WriteTextDocument);
    Measure("scans of 300 dpi", scans, WriteScan);
    return 0;
}

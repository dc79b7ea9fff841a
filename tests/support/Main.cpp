#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <glog/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Asked by the leak sanitizer in builds that have it. The offscreen platform plugin never deletes its screen, and the
// font configuration keeps its caches; both live as long as the process.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\n";
}

int main(int argc, char** argv)
{
    // Before Qt reads them: no display, file names in UTF-8 wherever the tests run, and a folder for temporary files
    // that nobody shares with us.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QTemporaryDir temporary;
    if (!temporary.isValid()) {
        qFatal("no folder for temporary files: %s", qPrintable(temporary.errorString()));
    }
    qputenv("TMPDIR", QFile::encodeName(temporary.path()));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(temporary.path()));

    testing::InitGoogleMock(&argc, argv);
    QGuiApplication application(argc, argv);
    FLAGS_logtostderr = true;
    google::InitGoogleLogging(argv[0]);
    return RUN_ALL_TESTS();
}

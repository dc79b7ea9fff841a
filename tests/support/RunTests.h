#pragma once

#include <QDir>
#include <QTemporaryDir>

#include <glog/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

/// What main() of a test program does, with an application object of Qt that has what the tests need.
/// \param platform what Qt shows windows on; "offscreen" needs no display
template <typename Application>
int RunTests(int argc, char** argv, const char* platform = "offscreen")
{
    // Before Qt reads them: the display, file names in UTF-8 wherever the tests run, and a folder for temporary files
    // that nobody shares with us.
    qputenv("QT_QPA_PLATFORM", platform);
    qputenv("LC_ALL", "C.UTF-8");
    const QTemporaryDir temporary;
    if (!temporary.isValid()) {
        qFatal("no folder for temporary files: %s", qPrintable(temporary.errorString()));
    }
    qputenv("TMPDIR", QFile::encodeName(temporary.path()));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(temporary.path()));

    testing::InitGoogleMock(&argc, argv);
    Application application(argc, argv);
    FLAGS_logtostderr = true;
    google::InitGoogleLogging(argv[0]);
    return RUN_ALL_TESTS();
}

} // namespace Norlis::Test

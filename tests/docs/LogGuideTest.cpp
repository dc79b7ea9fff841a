// How an editor takes the log of the library, as the guide to embedding shows it.

#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/RecordingStore.h>

#include <glog/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace Norlis::Test {

namespace {

class EditorLog : public google::LogSink {
public:
    EditorLog()
    {
        for (int severity = 0; severity < google::NUM_SEVERITIES; ++severity) {
            google::SetLogDestination(severity, ""); // no files of glog's own
        }
        FLAGS_stderrthreshold = google::GLOG_FATAL;
        google::InitGoogleLogging("editor"); // until then all lines go to standard error
        google::AddLogSink(this);
    }

    ~EditorLog() override
    {
        google::RemoveLogSink(this);
    }

    using google::LogSink::send;

    void send(google::LogSeverity severity, const char*, const char* file, int line, const google::LogMessageTime& time,
              const char* message, std::size_t length) override
    {
        const std::lock_guard lock(mutex); // any thread may call this
        lines.push_back(ToString(severity, file, line, time, message, length));
    }

    std::vector<std::string> lines;

private:
    std::mutex mutex;
};

TEST(LogGuideTest, LinesOfTheLibraryGoToTheEditorsLogAndNowhereElse)
{
    const PDF::Cloud::NorlisCloudFilesManager documents(std::make_shared<TestKit::RecordingStore>(),
                                                        std::make_shared<Host::LocalFileSystem>(),
                                                        std::make_shared<Host::Md5HashCalculator>());
    google::ShutdownGoogleLogging(); // the log of the test program
    const bool wasToStderr = std::exchange(FLAGS_logtostderr, false);
    const auto threshold = FLAGS_stderrthreshold;
    testing::internal::CaptureStderr();
    {
        EditorLog log;
        documents.GetDocumentName(7);
        EXPECT_THAT(log.lines, testing::ElementsAre(testing::HasSubstr("Invalid index requested: 7")));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    FLAGS_logtostderr = wasToStderr;
    FLAGS_stderrthreshold = threshold;
}

} // namespace

} // namespace Norlis::Test

#pragma once

#include <NorlisTestKit/Journal.h>

#include <glog/logging.h>

#include <memory>
#include <set>
#include <string>

namespace Norlis::Test {

/// Writes every log record, as "ERROR Auth failed", to a journal for as long as it lives.
class LogCapture : public google::LogSink {
public:
    explicit LogCapture(std::shared_ptr<TestKit::Journal> journal = std::make_shared<TestKit::Journal>());
    ~LogCapture() override;

    /// Full names of the source files that the records came from.
    const std::set<std::string>& Sources() const;

    using google::LogSink::send;
    void send(google::LogSeverity severity, const char* fullFilename, const char* baseFilename, int line,
              const google::LogMessageTime& time, const char* message, size_t length) override;

private:
    std::shared_ptr<TestKit::Journal> journal;
    std::set<std::string> sources;
};

} // namespace Norlis::Test

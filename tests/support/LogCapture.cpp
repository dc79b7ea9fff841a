#include "LogCapture.h"

namespace Norlis::Test {

LogCapture::LogCapture(std::shared_ptr<TestKit::Journal> journal) : journal(std::move(journal))
{
    google::AddLogSink(this);
}

LogCapture::~LogCapture()
{
    google::RemoveLogSink(this);
}

const std::set<std::string>& LogCapture::Sources() const
{
    return sources;
}

void LogCapture::send(google::LogSeverity severity, const char* fullFilename, const char*, int,
                      const google::LogMessageTime&, const char* message, size_t length)
{
    sources.insert(fullFilename);
    journal->Write(std::string(google::GetLogSeverityName(severity)) + ' ' + std::string(message, length));
}

} // namespace Norlis::Test

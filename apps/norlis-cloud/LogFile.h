#pragma once

#include <QFile>

#include <glog/logging.h>

#include <mutex>

namespace Norlis::Terminal {

/// Takes the log records of the library and of Qt into one file, so that the terminal stays for results. A file that
/// has grown large is set aside under the ending ".old" when the program starts. Logging never fails the program: where
/// the file cannot be written, records are dropped. One object at a time.
class LogFile : public google::LogSink {
public:
    explicit LogFile(const QString& folder);
    ~LogFile() override;

    using google::LogSink::send;
    void send(google::LogSeverity severity, const char* fullFileName, const char* fileName, int line,
              const google::LogMessageTime& time, const char* message, std::size_t length) override;

private:
    std::mutex mutex;
    QFile file;
    QtMessageHandler qtHandler = nullptr; ///< the one before
};

} // namespace Norlis::Terminal

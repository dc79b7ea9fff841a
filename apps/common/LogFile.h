#pragma once

#include <QFile>

#include <glog/logging.h>

#include <mutex>
#include <string>

namespace Norlis::Apps {

/// Takes the log records of the library and of Qt into one file, so that standard error stays for the program. A file
/// that has grown large is set aside under the ending ".old" when the program starts. Logging never fails the program:
/// where the file cannot be written, records are dropped. One object at a time.
class LogFile : public google::LogSink {
public:
    /// \param folder  created when missing, private to the user
    /// \param program names the file
    LogFile(const QString& folder, const QString& program);
    ~LogFile() override;

    using google::LogSink::send;

    /// Called by glog, on any thread.
    void send(google::LogSeverity severity, const char* fullFileName, const char* fileName, int line,
              const google::LogMessageTime& time, const char* message, std::size_t length) override;

private:
    std::mutex mutex;
    const std::string program; ///< glog keeps the pointer to it
    QFile file;
    QtMessageHandler qtHandler = nullptr; ///< the one before
};

} // namespace Norlis::Apps

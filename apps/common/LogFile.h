#pragma once

#include <QFile>

#include <glog/logging.h>

#include <mutex>
#include <string>

namespace Norlis::Apps {

/// Writes the log records of the library and of Qt to one file, which leaves standard error to the program. A file that
/// has grown large is renamed to end in ".old" when the program starts. Logging never makes the program fail: if the
/// file cannot be written, records are dropped. One object at a time.
class LogFile : public google::LogSink {
public:
    /// \param folder  created if missing; private to the user
    /// \param program name of the file, without ".log"
    LogFile(const QString& folder, const QString& program);
    ~LogFile() override;

    using google::LogSink::send;

    /// Called by glog, on any thread.
    void send(google::LogSeverity severity, const char* fullFileName, const char* fileName, int line,
              const google::LogMessageTime& time, const char* message, std::size_t length) override;

private:
    std::mutex mutex;
    const std::string program; ///< glog keeps a pointer to it
    QFile file;
    QtMessageHandler qtHandler = nullptr; ///< the previous one
};

} // namespace Norlis::Apps

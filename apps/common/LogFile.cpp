#include "LogFile.h"

#include <QDir>

namespace Norlis::Apps {

namespace {

constexpr qint64 maxLogSize = 1024 * 1024; // bytes

void PassToLog(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    switch (type) {
    case QtDebugMsg:
    case QtInfoMsg:
        LOG(INFO) << text.toStdString();
        break;
    case QtWarningMsg:
        LOG(WARNING) << text.toStdString();
        break;
    case QtCriticalMsg:
    case QtFatalMsg: // Qt itself ends the program
        LOG(ERROR) << text.toStdString();
        break;
    }
}

} // namespace

LogFile::LogFile(const QString& folder, const QString& program) : program(program.toStdString())
{
    const auto readAndWriteByOwner = QFile::ReadOwner | QFile::WriteOwner;
    if (QDir().mkpath(folder)) {
        QFile::setPermissions(folder, readAndWriteByOwner | QFile::ExeOwner);
    }
    file.setFileName(folder + '/' + program + ".log");
    if (file.size() > maxLogSize) {
        const QString old = file.fileName() + ".old";
        QFile::remove(old);
        QFile::rename(file.fileName(), old);
    }
    if (file.open(QIODevice::Append | QIODevice::Unbuffered)) {
        file.setPermissions(readAndWriteByOwner);
    }

    for (int severity = 0; severity < google::NUM_SEVERITIES; ++severity) {
        google::SetLogDestination(severity, ""); // no files of glog's own
    }
    FLAGS_stderrthreshold = google::GLOG_FATAL;
    google::InitGoogleLogging(this->program.c_str());
    google::AddLogSink(this);
    qtHandler = qInstallMessageHandler(PassToLog);
}

LogFile::~LogFile()
{
    qInstallMessageHandler(qtHandler);
    google::RemoveLogSink(this);
    google::ShutdownGoogleLogging();
}

void LogFile::send(google::LogSeverity severity, const char*, const char* fileName, int line,
                   const google::LogMessageTime& time, const char* message, std::size_t length)
{
    const std::string record = ToString(severity, fileName, line, time, message, length) + '\n';
    const std::lock_guard guard(mutex);
    if (file.isOpen()) {
        file.write(record.data(), static_cast<qint64>(record.size()));
    }
}

} // namespace Norlis::Apps

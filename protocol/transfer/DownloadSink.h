#pragma once

#include "Background.h"
#include <files/AtomicFile.h>
#include <protocol/http/HttpMessage.h>

#include <QCryptographicHash>

namespace Norlis::Social {

/// A local file that the body of an answer is written to: written and hashed on another thread, under a temporary name.
/// Memory is bounded however slow the disk is.
class DownloadSink : public HttpSink {
public:
    /// What an answer must be to be written. An empty text accepts it; `from` is the position in the file at which its
    /// body begins.
    using Check = std::function<QString(const HttpHead& head, qint64& from)>;

    /// \param folder     for the temporary file, which vanishes with this object unless it was committed
    /// \param onPosition called with the number of bytes that have arrived in all
    DownloadSink(const QString& folder, QThreadPool& pool, Check check, std::function<void(qint64)> onPosition);
    ~DownloadSink() override;

    /// Creates the temporary file. False when that fails; ErrorText says why.
    bool Open();

    bool Begin(const HttpHead& head, std::function<void()> onReady) override;
    Taken Add(const char* data, qint64 size) override;

    /// Writes what is still in memory and makes all of it durable, then calls done unless this object is gone.
    void Flush(std::function<void()> done);

    /// Makes the name of a committed file durable, then calls done unless this object is gone.
    void SyncFolder(std::function<void()> done);

    /// Bytes that have arrived.
    qint64 Position() const
    {
        return position;
    }

    /// After Flush.
    QString Md5() const;
    Files::AtomicFile& File();

    /// Why the answer was refused or the file cannot be written; empty when neither.
    QString ErrorText() const
    {
        return error;
    }

    bool IsAnswerRefused() const
    {
        return isRefused;
    }

private:
    struct Written;

    void WriteOut();

    /// Of the temporary file; without effect once it was committed.
    void TakeNameAway();

    const QString folder;
    QThreadPool& pool;
    const Check check;
    const std::function<void(qint64)> onPosition;
    std::shared_ptr<Written> written; ///< touched by the writing thread while it writes
    std::unique_ptr<Background> writing;
    std::function<void()> onReady;
    QByteArray collected; ///< not yet given to the writing thread
    qint64 position = 0;
    int underWay = 0; ///< pieces that are being written
    bool isWaitedFor = false;
    bool isRefused = false;
    QString error;
};

} // namespace Norlis::Social

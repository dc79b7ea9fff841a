#pragma once

#include "Background.h"
#include <files/AtomicFile.h>
#include <protocol/http/HttpMessage.h>

#include <limits>

namespace Norlis::Social {

/// Writes the body of a response to a local file under a temporary name on one other thread, and hashes it on a second
/// one. Memory is bounded however slow the disk is.
class DownloadSink : public HttpSink {
public:
    /// Looks at a response before its body is written. Returns why it is refused; an empty text accepts it. `from` is
    /// the position in the file at which the body begins.
    using Check = std::function<QString(const HttpHead& head, qint64& from)>;

    /// \param folder     for the temporary file, which is removed with this object unless it was committed
    /// \param onPosition called with the number of bytes that have arrived so far
    DownloadSink(const QString& folder, QThreadPool& pool, Check check, std::function<void(qint64)> onPosition);
    ~DownloadSink() override;

    /// Creates the temporary file. False when that fails; see ErrorText.
    bool Open();

    /// From the byte after so many on, what arrives is refused.
    void SetLimit(qint64 bytes);

    bool Begin(const HttpHead& head, std::function<void()> onReady) override;
    Taken Add(const char* data, qint64 size) override;

    /// Writes and hashes what is still in memory, then calls done, from the event loop, unless this object is destroyed
    /// before.
    void Finish(std::function<void()> done);

    /// Bytes that have arrived.
    qint64 Position() const
    {
        return position;
    }

    /// Hexadecimal, of the whole file; after Finish.
    QString Md5() const;

    /// To be made durable and committed, after Finish.
    std::shared_ptr<Files::AtomicFile> File() const;

    /// Why the response was refused or the file cannot be written; empty when all is well.
    QString ErrorText() const
    {
        return error;
    }

    bool IsResponseRefused() const
    {
        return isRefused;
    }

    /// Whether more has arrived than the limit allows.
    bool IsOverLimit() const
    {
        return isOverLimit;
    }

private:
    struct Written;

    void WriteOut();
    void OnPieceDone();

    /// Without effect once it was committed.
    void RemoveTemporaryFile();

    const QString folder;
    QThreadPool& pool;
    const Check check;
    const std::function<void(qint64)> onPosition;
    std::shared_ptr<Written> written; ///< its file is touched by the writing thread, its hash by the hashing one
    std::unique_ptr<Background> writing;
    std::unique_ptr<Background> hashing;
    std::function<void()> onFinished;
    std::function<void()> onReady;
    QByteArray collected; ///< not yet given to the writing thread
    qint64 position = 0;
    qint64 limit = std::numeric_limits<qint64>::max();
    int stepsInFlight = 0; ///< of which each piece takes two: to be written, and to be hashed
    bool isWaitedFor = false;
    bool isRefused = false;
    bool isOverLimit = false;
    QString error;
};

} // namespace Norlis::Social

#pragma once

#include "Background.h"
#include <files/FileReader.h>
#include <protocol/http/HttpMessage.h>

#include <deque>
#include <vector>

namespace Norlis::Social {

/// What is remembered of a file that was sent, to recognise it when a server gives it back.
struct SentContent {
    static constexpr qint64 sampleSize = 64 * 1024; // bytes

    struct Sample {
        qint64 position = 0;
        QByteArray bytes;
    };

    qint64 size = 0;             ///< bytes
    QByteArray md5;              ///< hexadecimal
    std::vector<Sample> samples; ///< from the beginning, the middle and the end
};

/// A local file as the body of a request: read ahead and hashed on another thread, so that neither disk nor hash holds
/// up the network. Memory is bounded whatever the size.
class UploadSource : public HttpSource {
public:
    /// \param pool       for reading
    /// \param onPosition called with the number of bytes handed out so far
    UploadSource(const QString& path, QThreadPool& pool, std::function<void(qint64)> onPosition);

    /// False when the file cannot be read; see ErrorText.
    bool Open();

    qint64 Size() const override;
    void Begin(std::function<void()> onReady) override;
    qint64 Read(char* buffer, qint64 size) override;

    /// Why the file cannot be read; empty when it can.
    QString ErrorText() const;

    /// Whether all of the file was handed out.
    bool IsWhole() const
    {
        return position == version.size;
    }

    /// Whether, besides, it is still the one that was opened.
    bool IsWholeAndUnchanged() const;

    /// Of the file when it was opened.
    const Files::FileIdentity& Version() const
    {
        return version;
    }

    /// Whether a file that still has that version still has what was handed out.
    bool IsLasting() const;

    /// Hexadecimal MD5 of what was handed out, once that was all.
    QString Md5() const;

    /// Of what was handed out, once that was all.
    SentContent Sent() const;

private:
    void ReadAhead();
    void OnPiece(const QByteArray& piece, const QString& problem);
    void BeginSamples();
    void TakeSamples(const char* data, qint64 size);

    const QString path;
    QThreadPool& pool;
    const std::function<void(qint64)> onPosition;
    Files::FileIdentity version;
    QString error;

    // Of one pass over the file; a repeated request makes another.

    /// Touched by one thread at a time: the reading one until the end of the file.
    std::shared_ptr<Files::FileReader> reader;
    std::unique_ptr<Background> reading;
    std::function<void()> onReady;
    std::deque<QByteArray> pieces; ///< read and not handed out yet
    qint64 offset = 0;             ///< how much of the first of them is handed out
    qint64 position = 0;           ///< bytes handed out
    std::vector<SentContent::Sample> samples;
    qint64 readBytes = 0;
    int piecesInFlight = 0; ///< being read
    bool isAtEnd = false;
    bool isWaitedFor = false;
};

} // namespace Norlis::Social

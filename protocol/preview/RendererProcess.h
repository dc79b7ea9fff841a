#pragma once

#include "DocumentPieces.h"
#include "RenderedPage.h"
#include <base/PreparedProcess.h>

#include <QFile>
#include <QSize>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace Norlis::Social {

/// A process with a socket as its standard input. Of this process it inherits neither the environment nor anything
/// open: it is handed what it needs.
class SocketProcess : public PreparedProcess {
public:
    SocketProcess();
    ~SocketProcess() override;

    /// Starts it. What was sent before it runs is waiting for it.
    void Start(const QString& program);

    /// Ours; -1 before the first start.
    int Socket() const;

private:
    int ours = -1;
    int theirs = -1;
};

/// A renderer of pages in a process of its own, so that a broken or hostile document harms nothing here. The
/// process is started when there is something to render, serves one document after the other, and ends when it has been
/// idle for a while.
///
/// Its answers are checked: it may be under a document's control.
class RendererProcess : public QObject {
    Q_OBJECT

public:
    /// The page, or a null picture and the reason.
    using Done = std::function<void(const RenderedPage& page, const QString& reason)>;

    /// \param program the renderer
    /// \param timeLimit for one document, in milliseconds
    explicit RendererProcess(const QString& program, int timeLimit = 15'000);
    ~RendererProcess() override;

    bool IsIdle() const;

    /// Renders a page of a PDF file, which must not be a link, so that it fits into the box. Only while idle. Calls
    /// done once, from the event loop, unless this object is destroyed before. \param page from 1
    void Render(const QString& path, int page, const QSize& box, Done done);

    /// The same of a document that is elsewhere. The time that it takes to get at its pieces does not count.
    void Render(const std::shared_ptr<DocumentPieces>& document, int page, const QSize& box, Done done);

private:
    /// What comes before the pixels of a picture, or before the text of a reason.
    struct Head {
        bool isPicture;
        qint64 length; ///< of the head itself, in bytes
        quint32 pageCount;
        quint32 width;
        quint32 height;
        quint32 contentSize; ///< bytes
    };

    /// \param refusal why not; else empty
    void Begin(int wantedPage, const QSize& wantedBox, const QString& refusal, Done whenDone);
    void Start();
    void Send();
    void Read();

    /// What the renderer wants to read.
    void ReadWanted();

    /// Nothing while it has not all come. What it says is looked at before room is made for the content.
    std::optional<Head> PeekHead();
    bool IsAcceptable(const Head& head) const;
    void OnProcessEnded();
    void OnTimeout();

    /// Stops and answers.
    void Abandon(const QString& reason);

    /// Ends the process, whatever state it is in.
    void Stop();
    void Answer(const RenderedPage& answer, const QString& reason);

    const QString program;
    const int timeLimit; ///< milliseconds
    SocketProcess process;
    QTimer watchdog;
    QTimer idleTimer;
    QFile document;
    std::shared_ptr<DocumentPieces> pieces; ///< in its place; null otherwise
    int page = 1;
    QSize box;
    bool isUsed = false; ///< the process has served other documents before this one
    Done done;           ///< set while busy
};

/// The renderer that belongs to this library, beside it or where it is installed; empty when it is missing.
QString FindRenderer();

} // namespace Norlis::Social

#pragma once

#include <QImage>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QTimer>

#include <functional>

namespace Norlis::Social {

/// A renderer of first pages in a process of its own, so that a broken or hostile document harms nothing here. The
/// process is started when there is something to render, serves one document after the other, and ends when it has been
/// idle for a while.
///
/// What it says is checked: it may be under a document's control.
class RendererProcess : public QObject {
    Q_OBJECT

public:
    /// The picture, or a null picture and why there is none.
    using Done = std::function<void(const QImage& image, const QString& reason)>;

    /// \param program the renderer
    /// \param timeLimit milliseconds for one document
    explicit RendererProcess(const QString& program, int timeLimit = 15'000);
    ~RendererProcess() override;

    bool IsIdle() const;

    /// Renders page one of a PDF file so that it fits into the box. Only while idle. Calls done once, from the event
    /// loop.
    void Render(const QString& path, const QSize& box, Done done);

private:
    void Send();
    void Read();
    void OnProcessEnded();
    void OnTimeout();

    /// Stops and answers.
    void Abandon(const QString& reason);

    /// Ends the process, whatever state it is in.
    void Stop();
    void Answer(const QImage& image, const QString& reason);

    const QString program;
    QProcess process;
    QTimer watchdog;
    QTimer idleTimer;
    QByteArray request;
    QSize box;
    bool isUsed = false; ///< the process had served other documents before this one
    Done done;           ///< set while busy
};

/// The renderer that belongs to this library, beside it or where it is installed; empty when it is missing.
QString FindRenderer();

} // namespace Norlis::Social

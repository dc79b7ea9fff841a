#pragma once

#include "PreviewCache.h"
#include "RendererProcess.h"
#include <protocol/service/CloudService.h>

#include <QHash>
#include <QSet>
#include <QTimer>

#include <deque>
#include <map>
#include <memory>
#include <vector>

namespace Norlis::Social {

/// Requests for previews that wait for a renderer. Those of one document are answered by one rendering.
class PreviewQueue {
public:
    /// A PDF document, and what it is a version of.
    struct Subject {
        QString document; ///< id
        QString name;     ///< for error texts
        QString path;     ///< of a local file; empty when it is to be fetched
        QString version;  ///< changes whenever the content does
    };

    /// What a fetch brought: one of the three.
    struct Fetched {
        QString path; ///< of a file to render
        QImage image; ///< a ready picture
        QString reason;
        std::shared_ptr<void> file; ///< keeps the file
        bool isSignedOut = false;   ///< see Reply
    };

    /// Fetches a document, or a picture of it for a box. Calls done once, from the event loop. Destroying what it
    /// returns gives the fetch up.
    using Fetch = std::function<std::shared_ptr<void>(const Subject& subject, const QSize& box,
                                                      std::function<void(Fetched)> done)>;

    /// \param cacheFolder see AuthInfo
    /// \param reply       called from the event loop
    /// \param program     the renderer
    /// \param fetch       for subjects without a path
    PreviewQueue(const QString& cacheFolder, std::function<void(qint64 id, Reply)> reply,
                 const QString& program = FindRenderer(), Fetch fetch = {});
    ~PreviewQueue();

    void Add(qint64 id, const Subject& subject, const QSize& box);
    void Cancel(qint64 id);

    /// To be called when a document was given new content. Where a version is but a date in whole seconds and a length,
    /// it may have the one of the old content, whose picture is not the one of the new.
    void Forget(const QString& document, const QString& version);

private:
    struct Wanted {
        qint64 id;
        QSize box;
    };
    struct Waiting {
        Subject subject;
        std::vector<Wanted> wanted;
        QSize largestBox;
        std::shared_ptr<void> file; ///< keeps the file at the subject's path
    };
    struct Fetching {
        Waiting waiting;
        std::shared_ptr<void> fetch;
    };

    RendererProcess* IdleRenderer() const;

    /// Takes up what is to be done next, if there is somebody to do it.
    void Next();

    /// Drops the requests that were cancelled, and finds the largest box of the others. False when none is left.
    bool IsStillWanted(Waiting& next) const;

    /// Answers from what is known already. False when it is not.
    bool AnswerFromMemory(const Waiting& next);
    void StartFetch(Waiting waiting);
    void OnFetched(int number, Fetched&& fetched);
    void Render(RendererProcess& renderer, Waiting waiting);
    void Keep(const Waiting& waiting, const QImage& image, const QString& reason);
    void AnswerWithPicture(const Waiting& waiting, const QImage& image);
    void AnswerWithReason(const Waiting& waiting, const QString& reason, bool isSignedOut = false);

    /// False when the request was cancelled.
    bool Take(qint64 id);

    const std::function<void(qint64, Reply)> reply;
    const Fetch fetch;
    PreviewCache cache;
    std::vector<std::unique_ptr<RendererProcess>> renderers;
    std::deque<QString> order;       ///< ids of documents, the oldest first
    QHash<QString, Waiting> waiting; ///< by id of the document
    std::map<int, Fetching> fetches; ///< by their numbers
    int lastFetch = 0;
    std::deque<Waiting> fetched;          ///< files that wait for a renderer
    QSet<qint64> open;                    ///< requests that are neither answered nor cancelled
    QHash<QString, QString> unrenderable; ///< why, by id and version, of documents that gave no picture
    QTimer nextTimer;
};

} // namespace Norlis::Social

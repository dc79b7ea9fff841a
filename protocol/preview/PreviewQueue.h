#pragma once

#include "PreviewCache.h"
#include "PreviewSource.h"
#include "RendererProcess.h"
#include <protocol/service/Reply.h>

#include <QHash>
#include <QPair>
#include <QSet>
#include <QTimer>

#include <deque>
#include <map>
#include <memory>
#include <vector>

namespace Norlis::Social {

/// Requests for previews of PDF documents. Those for one page of a document are answered by one rendering. Page one is
/// kept, so that it can be shown again at once; later pages are not, and are drawn anew.
class PreviewQueue {
public:
    /// \param cacheFolder see AuthInfo
    /// \param source      outlives the queue
    /// \param reply       called from the event loop
    /// \param program     the renderer
    PreviewQueue(const QString& cacheFolder, PreviewSource& source, std::function<void(qint64 id, Reply)> reply,
                 const QString& program = FindRenderer());
    ~PreviewQueue();

    void Add(qint64 id, const PreviewSubject& subject, const QSize& box);

    /// The same of a file on this computer.
    void AddLocal(qint64 id, const QString& localPath, int page, const QSize& box);

    /// No reply follows. Unknown ids are ignored.
    void Cancel(qint64 id);

    /// To be called when a document was given new content. Where a version is no more than a date in whole seconds and
    /// a length, that of the new content may equal that of the old, whose preview would be the wrong one.
    void Forget(const QString& document, const QString& version);

private:
    using Page = QPair<QString, int>; ///< id of the document, and which page

    struct Wanted {
        qint64 id;
        QSize box;
    };
    struct Job {
        PreviewSubject subject;
        std::vector<Wanted> wanted;
        QSize box; ///< the largest one wanted
        std::shared_ptr<const PreviewSource::File> file;
        std::shared_ptr<DocumentPieces> pieces; ///< in the place of the file
    };
    struct Fetching {
        Job job;
        std::unique_ptr<PreviewSource::Fetch> fetch;
    };

    RendererProcess* IdleRenderer() const;

    /// Takes the next step that can be taken.
    void Next();

    /// Drops the requests that were cancelled, and finds the largest box of the others. False when none is left.
    bool IsStillWanted(Job& job) const;

    /// Answers from what is known already. False when it is not.
    bool AnswerFromCache(const Job& job);
    void StartFetch(Job job);
    void OnFetched(int number, PreviewSource::Result&& result);
    void Render(RendererProcess& renderer, Job job);

    /// Remembers the outcome and answers.
    void Finish(const Job& job, const RenderedPage& page, const QString& reason);
    void AnswerWithPreview(const Job& job, const RenderedPage& page);
    void AnswerWithReason(const Job& job, const QString& reason, bool isSignedOut = false);

    PreviewSource& source;
    const std::function<void(qint64, Reply)> reply;
    PreviewCache cache;
    std::vector<std::unique_ptr<RendererProcess>> renderers;
    std::deque<Page> order; ///< the oldest first
    QHash<Page, Job> waiting;
    std::map<int, Fetching> fetches;
    int lastFetch = 0;
    std::deque<Job> fetched;              ///< waiting for a renderer
    QSet<qint64> open;                    ///< requests that are neither answered nor cancelled
    QHash<QString, QString> unrenderable; ///< the reason, by id and version, for documents that gave no preview
    QTimer nextTimer;
};

} // namespace Norlis::Social

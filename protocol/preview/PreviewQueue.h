#pragma once

#include "../CloudService.h"
#include "PreviewCache.h"
#include "RendererProcess.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <deque>
#include <memory>
#include <vector>

namespace Norlis::Social {

/// Requests for previews that wait for a renderer. Those of one document are answered by one rendering.
class PreviewQueue {
public:
    /// A local PDF file, and what it is a version of.
    struct Subject {
        QString document; ///< id
        QString name;     ///< for error texts
        QString path;
        QString version; ///< changes whenever the content does
    };

    /// \param cacheFolder see AuthInfo
    /// \param reply       called from the event loop
    /// \param program     the renderer
    PreviewQueue(const QString& cacheFolder, std::function<void(qint64 id, Reply)> reply,
                 const QString& program = FindRenderer());
    ~PreviewQueue();

    void Add(qint64 id, const Subject& subject, const QSize& box);
    void Cancel(qint64 id);

private:
    struct Wanted {
        qint64 id;
        QSize box;
    };
    struct Waiting {
        Subject subject;
        std::vector<Wanted> wanted;
    };

    /// Takes up the next document, if a renderer is idle.
    void Next();
    void Render(RendererProcess& renderer, Waiting waiting);
    void AnswerWithPicture(const Waiting& waiting, const QImage& image);
    void AnswerWithReason(const Waiting& waiting, const QString& reason);

    /// False when the request was cancelled.
    bool Take(qint64 id);

    const std::function<void(qint64, Reply)> reply;
    PreviewCache cache;
    std::vector<std::unique_ptr<RendererProcess>> renderers;
    std::deque<QString> order;            ///< ids of documents, the oldest first
    QHash<QString, Waiting> waiting;      ///< by id of the document
    QSet<qint64> open;                    ///< requests that are neither answered nor cancelled
    QHash<QString, QString> unrenderable; ///< why, by id and version, of documents that gave no picture
    QTimer nextTimer;
};

} // namespace Norlis::Social

#include "PreviewQueue.h"

#include <QThread>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int mostOpenRequests = 1'000'000;
constexpr int mostUnrenderable = 10'000;

QString VersionKey(const PreviewQueue::Subject& subject)
{
    return subject.document + '/' + subject.version;
}

} // namespace

PreviewQueue::PreviewQueue(const QString& cacheFolder, std::function<void(qint64, Reply)> reply, const QString& program)
    : reply(std::move(reply)),
      cache(cacheFolder)
{
    const int processes = std::clamp(QThread::idealThreadCount(), 1, 4);
    for (int count = 0; count < processes; ++count) {
        renderers.push_back(std::make_unique<RendererProcess>(program));
    }
    nextTimer.setInterval(0);
    QObject::connect(&nextTimer, &QTimer::timeout, [this] { Next(); });
}

PreviewQueue::~PreviewQueue() = default;

void PreviewQueue::Add(qint64 id, const Subject& subject, const QSize& box)
{
    if (open.size() >= mostOpenRequests) {
        reply(id, Failed("Fetching a preview", subject.name, "Too many previews are waited for"));
        return;
    }
    open.insert(id);
    auto& waitingForDocument = waiting[subject.document];
    if (waitingForDocument.wanted.empty()) {
        order.push_back(subject.document);
    }
    waitingForDocument.subject = subject; // the newest version
    waitingForDocument.wanted.push_back({id, box});
    nextTimer.start();
}

void PreviewQueue::Cancel(qint64 id)
{
    open.remove(id); // the rest of it is dropped when its turn comes
}

void PreviewQueue::Next()
{
    const auto idle = std::find_if(renderers.begin(), renderers.end(), [](const auto& each) { return each->IsIdle(); });
    if (order.empty() || idle == renderers.end()) {
        nextTimer.stop(); // until there is something to do, and somebody to do it
        return;
    }
    Waiting next = waiting.take(order.front());
    order.pop_front();
    next.wanted.erase(std::remove_if(next.wanted.begin(), next.wanted.end(),
                                     [this](const Wanted& wanted) { return !open.contains(wanted.id); }),
                      next.wanted.end());
    if (next.wanted.empty()) {
        return;
    }
    const auto reason = unrenderable.constFind(VersionKey(next.subject));
    if (reason != unrenderable.constEnd()) {
        AnswerWithReason(next, *reason);
    } else {
        Render(**idle, std::move(next));
    }
}

void PreviewQueue::Render(RendererProcess& renderer, Waiting next)
{
    QSize largestBox;
    for (const Wanted& wanted : next.wanted) {
        largestBox = largestBox.expandedTo(wanted.box);
    }
    if (const auto kept = cache.Find(next.subject.document, next.subject.version, largestBox)) {
        AnswerWithPicture(next, *kept);
        return;
    }
    const QString path = next.subject.path;
    renderer.Render(path, largestBox,
                    [this, next = std::move(next), largestBox](const QImage& image, const QString& why) {
                        nextTimer.start();
                        if (image.isNull()) {
                            if (unrenderable.size() >= mostUnrenderable) {
                                unrenderable.clear();
                            }
                            unrenderable.insert(VersionKey(next.subject), why);
                            AnswerWithReason(next, why);
                        } else {
                            cache.Store(next.subject.document, next.subject.version, largestBox, image);
                            AnswerWithPicture(next, image);
                        }
                    });
}

void PreviewQueue::AnswerWithPicture(const Waiting& answered, const QImage& image)
{
    for (const Wanted& wanted : answered.wanted) {
        if (Take(wanted.id)) {
            const bool fits = image.width() <= wanted.box.width() && image.height() <= wanted.box.height();
            reply(
                wanted.id,
                {Success, fits ? image : image.scaled(wanted.box, Qt::KeepAspectRatio, Qt::SmoothTransformation), {}});
        }
    }
}

void PreviewQueue::AnswerWithReason(const Waiting& answered, const QString& reason)
{
    for (const Wanted& wanted : answered.wanted) {
        if (Take(wanted.id)) {
            reply(wanted.id, Failed("Fetching a preview", answered.subject.name, reason));
        }
    }
}

bool PreviewQueue::Take(qint64 id)
{
    return open.remove(id);
}

} // namespace Norlis::Social

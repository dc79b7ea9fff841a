#include "PreviewQueue.h"

#include <QThread>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int mostOpenRequests = 1'000'000;
constexpr int mostUnrenderable = 10'000;
constexpr std::size_t mostFetches = 2; // at once

QString VersionKey(const QString& document, const QString& version)
{
    return document + '/' + version;
}

QString VersionKey(const PreviewQueue::Subject& subject)
{
    return VersionKey(subject.document, subject.version);
}

bool IsFetched(const PreviewQueue::Subject& subject)
{
    return subject.path.isEmpty();
}

} // namespace

PreviewQueue::PreviewQueue(const QString& cacheFolder, std::function<void(qint64, Reply)> reply, const QString& program,
                           Fetch fetch)
    : reply(std::move(reply)),
      fetch(std::move(fetch)),
      cache(cacheFolder)
{
    const int processes = std::clamp(QThread::idealThreadCount(), 1, 4);
    for (int count = 0; count < processes; ++count) {
        renderers.push_back(std::make_unique<RendererProcess>(program));
    }
    nextTimer.setInterval(0);
    QObject::connect(&nextTimer, &QTimer::timeout, &nextTimer, [this] { Next(); });
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
    if (!open.remove(id)) { // what waits is dropped when its turn comes
        return;
    }
    for (auto each = fetches.begin(); each != fetches.end();) {
        each = IsStillWanted(each->second.waiting) ? std::next(each) : fetches.erase(each);
    }
    nextTimer.start();
}

void PreviewQueue::Forget(const QString& document, const QString& version)
{
    cache.Remove(document, version);
    unrenderable.remove(VersionKey(document, version));
    // What is under way may be of the old content, and is not to be kept as a picture of the new one.
    const auto outdate = [&](Waiting& each) {
        if (each.subject.document == document && each.subject.version == version) {
            each.subject.version += QStringLiteral("/replaced");
        }
    };
    for (auto& each : fetches) {
        outdate(each.second.waiting);
    }
    std::for_each(fetched.begin(), fetched.end(), outdate);
}

RendererProcess* PreviewQueue::IdleRenderer() const
{
    const auto idle = std::find_if(renderers.begin(), renderers.end(), [](const auto& each) { return each->IsIdle(); });
    return idle == renderers.end() ? nullptr : idle->get();
}

void PreviewQueue::Next()
{
    RendererProcess* const renderer = IdleRenderer();
    if (!fetched.empty() && renderer) {
        Waiting next = std::move(fetched.front());
        fetched.pop_front();
        if (IsStillWanted(next)) {
            Render(*renderer, std::move(next));
        }
        return;
    }
    // Files that are fetched and wait for a renderer take room on the disk.
    const bool canFetch = fetches.size() + fetched.size() < mostFetches;
    const bool canGoOn = !order.empty() && (IsFetched(waiting[order.front()].subject) ? canFetch : renderer != nullptr);
    if (!canGoOn) {
        nextTimer.stop(); // until there is something to do, and somebody to do it
        return;
    }
    Waiting next = waiting.take(order.front());
    order.pop_front();
    if (!IsStillWanted(next) || AnswerFromMemory(next)) {
        return;
    }
    if (IsFetched(next.subject)) {
        StartFetch(std::move(next));
    } else {
        Render(*renderer, std::move(next));
    }
}

bool PreviewQueue::IsStillWanted(Waiting& next) const
{
    next.wanted.erase(std::remove_if(next.wanted.begin(), next.wanted.end(),
                                     [this](const Wanted& wanted) { return !open.contains(wanted.id); }),
                      next.wanted.end());
    next.largestBox = {};
    for (const Wanted& wanted : next.wanted) {
        next.largestBox = next.largestBox.expandedTo(wanted.box);
    }
    return !next.wanted.empty();
}

bool PreviewQueue::AnswerFromMemory(const Waiting& next)
{
    const auto reason = unrenderable.constFind(VersionKey(next.subject));
    if (reason != unrenderable.constEnd()) {
        AnswerWithReason(next, *reason);
        return true;
    }
    if (const auto kept = cache.Find(next.subject.document, next.subject.version, next.largestBox)) {
        AnswerWithPicture(next, *kept);
        return true;
    }
    return false;
}

void PreviewQueue::StartFetch(Waiting next)
{
    const int number = ++lastFetch;
    Fetching& fetching = fetches[number];
    fetching.waiting = std::move(next);
    fetching.fetch = fetch(fetching.waiting.subject, fetching.waiting.largestBox,
                           [this, number](Fetched&& result) { OnFetched(number, std::move(result)); });
}

void PreviewQueue::OnFetched(int number, Fetched&& result)
{
    const auto found = fetches.find(number);
    Fetching fetching = std::move(found->second); // it goes when this is done
    fetches.erase(found);
    nextTimer.start();
    Waiting& next = fetching.waiting;
    if (!result.image.isNull()) {
        Keep(next, result.image, {});
        return;
    }
    if (result.path.isEmpty()) {
        AnswerWithReason(next, result.reason, result.isSignedOut); // the next try may succeed
        return;
    }
    next.subject.path = result.path;
    next.file = std::move(result.file);
    fetched.push_back(std::move(next));
}

void PreviewQueue::Render(RendererProcess& renderer, Waiting next)
{
    const QString path = next.subject.path;
    const QSize box = next.largestBox;
    renderer.Render(path, box, [this, next = std::move(next)](const QImage& image, const QString& why) {
        nextTimer.start();
        Keep(next, image, why);
    });
}

void PreviewQueue::Keep(const Waiting& done, const QImage& image, const QString& reason)
{
    if (!image.isNull()) {
        cache.Store(done.subject.document, done.subject.version, done.largestBox, image);
        AnswerWithPicture(done, image);
        return;
    }
    if (unrenderable.size() >= mostUnrenderable) {
        unrenderable.clear();
    }
    unrenderable.insert(VersionKey(done.subject), reason);
    AnswerWithReason(done, reason);
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

void PreviewQueue::AnswerWithReason(const Waiting& answered, const QString& reason, bool isSignedOut)
{
    Reply failure = Failed("Fetching a preview", answered.subject.name, reason, isSignedOut ? "Sign in again." : "");
    failure.isSignedOut = isSignedOut;
    for (const Wanted& wanted : answered.wanted) {
        if (Take(wanted.id)) {
            reply(wanted.id, failure);
        }
    }
}

bool PreviewQueue::Take(qint64 id)
{
    return open.remove(id);
}

} // namespace Norlis::Social

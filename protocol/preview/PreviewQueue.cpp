#include "PreviewQueue.h"

#include <files/FileIdentity.h>

#include <QCryptographicHash>
#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int maxOpenRequests = 1'000'000;
constexpr int maxUnrenderable = 10'000;
constexpr std::size_t maxFetches = 2; // fetched files that wait for a renderer included: they take room on the disk

QString VersionKey(const QString& document, const QString& version)
{
    return document + '/' + version;
}

/// Stands for a file as ids do for documents: it becomes part of a file's name.
QString IdOf(const QString& localPath)
{
    const auto hash = QCryptographicHash::hash(localPath.toUtf8(), QCryptographicHash::Sha1);
    return "local-" + QString::fromLatin1(hash.toHex());
}

QString VersionKey(const PreviewSubject& subject)
{
    return VersionKey(subject.document, subject.version);
}

} // namespace

PreviewQueue::PreviewQueue(const QString& cacheFolder, PreviewSource& source, std::function<void(qint64, Reply)> reply,
                           const QString& program)
    : source(source),
      reply(std::move(reply)),
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

void PreviewQueue::Add(qint64 id, const PreviewSubject& subject, const QSize& box)
{
    const QString obstacle = box.isEmpty()      ? QStringLiteral("The requested size is empty")
                             : subject.page < 1 ? QStringLiteral("There is no such page")
                             : open.size() >= maxOpenRequests
                                 ? QStringLiteral("Too many previews have been requested at once")
                                 : QString();
    if (!obstacle.isEmpty()) {
        reply(id, FailureReply("Fetching a preview", subject.name, obstacle));
        return;
    }
    open.insert(id);
    const Page page(subject.document, subject.page);
    Job& job = waiting[page];
    if (job.wanted.empty()) {
        order.push_back(page);
    }
    job.subject = subject; // the newest version
    job.wanted.push_back({id, box});
    nextTimer.start();
}

void PreviewQueue::AddLocal(qint64 id, const QString& localPath, int page, const QSize& box)
{
    const QFileInfo file(localPath);
    const QString path = file.canonicalFilePath(); // the renderer is given no links
    const auto identity = Files::FileIdentity::OfPath(path);
    if (identity.IsFile()) {
        Add(id, {IdOf(path), file.fileName(), identity.ToString(), page, path}, box);
    } else {
        reply(id, FailureReply("Fetching a preview", file.fileName(), "There is no such file"));
    }
}

void PreviewQueue::Cancel(qint64 id)
{
    if (!open.remove(id)) { // what waits is dropped when its turn comes
        return;
    }
    for (auto each = fetches.begin(); each != fetches.end();) {
        each = IsStillWanted(each->second.job) ? std::next(each) : fetches.erase(each);
    }
    nextTimer.start();
}

void PreviewQueue::Forget(const QString& document, const QString& version)
{
    cache.Remove(document, version);
    unrenderable.remove(VersionKey(document, version));
    // What is being fetched may be the old content, and is not to be kept as a preview of the new one.
    const auto outdate = [&](Job& job) {
        if (job.subject.document == document && job.subject.version == version) {
            job.subject.version += QStringLiteral("/replaced");
        }
    };
    for (auto& each : fetches) {
        outdate(each.second.job);
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
        Job job = std::move(fetched.front());
        fetched.pop_front();
        if (IsStillWanted(job)) {
            Render(*renderer, std::move(job));
        }
        return;
    }
    if (order.empty() || fetches.size() + fetched.size() >= maxFetches) {
        nextTimer.stop(); // until something changes
        return;
    }
    Job job = waiting.take(order.front());
    order.pop_front();
    if (IsStillWanted(job) && !AnswerFromCache(job)) {
        StartFetch(std::move(job));
    }
}

bool PreviewQueue::IsStillWanted(Job& job) const
{
    job.wanted.erase(std::remove_if(job.wanted.begin(), job.wanted.end(),
                                    [this](const Wanted& wanted) { return !open.contains(wanted.id); }),
                     job.wanted.end());
    job.box = {};
    for (const Wanted& wanted : job.wanted) {
        job.box = job.box.expandedTo(wanted.box);
    }
    return !job.wanted.empty();
}

bool PreviewQueue::AnswerFromCache(const Job& job)
{
    if (job.subject.page > 1) {
        return false;
    }
    const auto reason = unrenderable.constFind(VersionKey(job.subject));
    if (reason != unrenderable.constEnd()) {
        AnswerWithReason(job, *reason);
        return true;
    }
    if (const auto cached = cache.Find(job.subject.document, job.subject.version, job.box)) {
        AnswerWithPreview(job, *cached);
        return true;
    }
    return false;
}

void PreviewQueue::StartFetch(Job job)
{
    if (!job.subject.localPath.isEmpty()) {
        job.file = std::make_shared<FileInPlace>(job.subject.localPath);
        fetched.push_back(std::move(job));
        return;
    }
    const int number = ++lastFetch;
    Fetching& fetching = fetches[number];
    fetching.job = std::move(job);
    fetching.fetch =
        source.FetchForPreview(fetching.job.subject, fetching.job.box, [this, number](PreviewSource::Result&& result) {
            OnFetched(number, std::move(result));
        });
}

void PreviewQueue::OnFetched(int number, PreviewSource::Result&& result)
{
    const auto found = fetches.find(number);
    Fetching fetching = std::move(found->second); // goes at the end of this
    fetches.erase(found);
    nextTimer.start();
    Job& job = fetching.job;
    if (!result.image.isNull()) {
        Finish(job, {result.image}, {});
    } else if (result.file || result.pieces) {
        job.file = std::move(result.file);
        job.pieces = std::move(result.pieces);
        fetched.push_back(std::move(job));
    } else {
        AnswerWithReason(job, result.reason, result.isSignedOut); // not remembered: the next try may succeed
    }
}

void PreviewQueue::Render(RendererProcess& renderer, Job job)
{
    const int number = job.subject.page;
    const QSize box = job.box;
    const auto file = job.file;
    const auto pieces = job.pieces;
    auto done = [this, job = std::move(job)](const RenderedPage& page, const QString& reason) {
        nextTimer.start();
        if (page.image.isNull() && job.pieces && job.pieces->HasFailed()) {
            AnswerWithReason(job, reason); // not remembered either
        } else {
            Finish(job, page, reason);
        }
    };
    if (pieces) {
        renderer.Render(pieces, number, box, std::move(done));
    } else {
        renderer.Render(file->Path(), number, box, std::move(done));
    }
}

void PreviewQueue::Finish(const Job& job, const RenderedPage& page, const QString& reason)
{
    const bool isKept = job.subject.page == 1;
    if (!page.image.isNull()) {
        if (isKept) {
            cache.Store(job.subject.document, job.subject.version, job.box, page);
        }
        AnswerWithPreview(job, page);
        return;
    }
    if (isKept) {
        if (unrenderable.size() >= maxUnrenderable) {
            unrenderable.clear();
        }
        unrenderable.insert(VersionKey(job.subject), reason);
    }
    AnswerWithReason(job, reason);
}

void PreviewQueue::AnswerWithPreview(const Job& job, const RenderedPage& page)
{
    const QImage& image = page.image;
    for (const Wanted& wanted : job.wanted) {
        if (!open.remove(wanted.id)) {
            continue; // cancelled
        }
        const bool fits = image.width() <= wanted.box.width() && image.height() <= wanted.box.height();
        Reply answer{
            Success, fits ? image : image.scaled(wanted.box, Qt::KeepAspectRatio, Qt::SmoothTransformation), {}};
        answer.pageCount = page.pageCount;
        reply(wanted.id, std::move(answer));
    }
}

void PreviewQueue::AnswerWithReason(const Job& job, const QString& reason, bool isSignedOut)
{
    Reply failure = FailureReply("Fetching a preview", job.subject.name, reason, isSignedOut ? "Sign in again." : "");
    failure.isSignedOut = isSignedOut;
    for (const Wanted& wanted : job.wanted) {
        if (open.remove(wanted.id)) {
            reply(wanted.id, failure);
        }
    }
}

} // namespace Norlis::Social

#include "ListMerge.h"

#include "Records.h"

namespace Norlis::Host {

using PDF::FileInfo;

namespace {

constexpr int minGoneTogether = 2; // one document that has gone is nothing unusual

} // namespace

ListMerge::ListMerge(const SessionContext& context, std::function<void()> onReady)
    : context(context),
      onReady(std::move(onReady))
{
}

void ListMerge::Start(const Files& newFiles, ChangeJournal::Time newRequestedAt, bool mayLackDocuments)
{
    ++listCount;
    heldCount = context.documents.Count();
    goneCount = 0;
    files = newFiles;
    requestedAt = newRequestedAt;
    isComplete = !mayLackDocuments;
    next = 0;
    listed.clear();
    unique.clear();
    heldIds.clear();

    const QStringList localPaths = context.documents.LocalPaths();
    if (localPaths.isEmpty()) {
        phase = Phase::Sorting;
        onReady();
        return;
    }
    phase = Phase::Hashing;
    context.hashes.Prepare(localPaths, this, [this, prepared = ++generation] {
        if (prepared == generation && phase == Phase::Hashing) {
            phase = Phase::Sorting;
            onReady();
        }
    });
}

bool ListMerge::IsActive() const
{
    return phase != Phase::Idle;
}

bool ListMerge::IsReady() const
{
    return phase != Phase::Idle && phase != Phase::Hashing;
}

void ListMerge::Step()
{
    switch (phase) {
    case Phase::Idle:
    case Phase::Hashing:
        break;
    case Phase::Sorting:
        if (next < files.size()) {
            const auto& file = files[next++];
            const auto id = IdOf(*file);
            if (!listed.contains(id)) {
                listed.insert(id);
                unique.append(file);
            }
        } else {
            files.clear();
            phase = Phase::Merging;
        }
        break;
    case Phase::Merging:
        // From the back, since every new document goes to the front: the list ends up in the order of the cloud.
        if (!unique.isEmpty()) {
            Merge(unique.takeLast());
        } else {
            heldIds = isComplete ? context.documents.Ids() : QStringList();
            phase = Phase::Removing;
        }
        break;
    case Phase::Removing:
        if (!heldIds.isEmpty()) {
            const auto id = heldIds.takeLast();
            if (!listed.contains(id)) {
                Remove(id);
            }
        } else {
            phase = Phase::Reporting;
        }
        break;
    case Phase::Reporting:
        Report();
        break;
    }
}

void ListMerge::Merge(const Record& fresh)
{
    const auto id = IdOf(*fresh);
    if (context.journal.WasRemovedAfter(requestedAt, id) || context.journal.WasUploadedAfter(requestedAt, id)) {
        return;
    }
    const CloudFacts facts(fresh->GetRedactableCloudInfo().value());
    const auto* known = context.documents.Find(id);
    if (!known) {
        Note(id, Change::Added);
        context.documents.AttachKeptCopy(fresh);
        context.documents.Add(fresh);
        return;
    }
    const bool isSameVersion = facts.IsSameVersionAs(known->facts);
    const bool hasChanged = facts.HasChangedFrom(known->facts);
    const bool isHashNew = !hasChanged && facts.hash != known->facts.hash;
    const bool isTimeNew = facts.modifiedAt.isValid() && !known->facts.modifiedAt.isValid();
    const bool hasCopy = !known->localPath.isEmpty();
    // Asked for once: a file that is written all the time is read each time.
    const auto copyHash = hasCopy ? context.hashes.CalculateHash(ToPath(known->localPath)) : std::string();
    const bool isCopyOutdated =
        hasCopy ? isHashNew || DocumentIndex::IsCopyOutdated(*known, copyHash) : context.documents.HasKeptCopy(fresh);
    if (hasChanged) {
        Note(id, Change::Changed);
    }
    if (hasChanged || isTimeNew || isCopyOutdated) {
        Update(id, fresh, isSameVersion, copyHash);
    } else if (isHashNew) {
        context.documents.LearnHash(id, facts.hash);
    }
}

void ListMerge::Update(const QString& id, const Record& fresh, bool isSameVersion, const std::string& copyHash)
{
    const auto held = context.documents.RecordOf(id);
    if (!held) {
        return;
    }
    const auto completed = std::make_shared<FileInfo>(*fresh);
    Complete(*completed, *held, isSameVersion);
    if (held->GetPath().empty() && context.documents.AttachKeptCopy(completed)) {
        context.documents.Replace(completed);
        return;
    }
    const auto path = held->GetPath();
    const auto cloudHash = completed->GetRedactableCloudInfo()->GetMd5Hash();
    if (!path.empty() && !cloudHash.empty() && cloudHash != held->GetCloudHashBeforeChange() && copyHash == cloudHash) {
        // Up to date after all: a program that is killed after a transfer has not saved that, and the next change, here
        // or in the cloud, would pass for one on both sides. An update does not carry it.
        completed->SetPath(path, cloudHash, cloudHash);
        context.cloud.AcceptListedVersion(id, ToText(path), cloudHash);
        context.documents.Replace(completed);
    } else {
        context.documents.Update(completed, isSameVersion, copyHash);
    }
}

void ListMerge::Complete(FileInfo& fresh, FileInfo& held, bool isSameVersion) const
{
    auto& cloudInfo = fresh.GetRedactableCloudInfo().value();
    auto& heldCloudInfo = held.GetRedactableCloudInfo().value();
    if (cloudInfo.GetDownloadUrl().isEmpty()) {
        // A files list tells neither the address nor who may see the document; an upload did.
        cloudInfo =
            FileInfo::CloudInfo(cloudInfo.GetId(), cloudInfo.GetFileName(), cloudInfo.GetSize(),
                                heldCloudInfo.IsPrivate(), heldCloudInfo.GetDownloadUrl(), cloudInfo.GetCreatedAt(),
                                cloudInfo.GetModifyTime(), cloudInfo.GetLifeTime(), cloudInfo.GetMd5Hash());
    }
    auto previews = heldCloudInfo.GetPreviewsSet();
    if (!isSameVersion) {
        // An update keeps the preview of the old content unless an empty path replaces it.
        for (auto& preview : previews) {
            preview.second = ioPath();
        }
    }
    cloudInfo.SetPreviewsSet(previews);
    fresh.SetPreviewsSet(held.GetPreviewsSet());
    fresh.SetPath(held.GetPath(), held.GetMd5Hash(), held.GetCloudHashBeforeChange());
    fresh.SetIsSyncingInProgress(context.documents.IsTransferring(IdOf(fresh)));
}

void ListMerge::Remove(const QString& id)
{
    if (context.journal.WasUploadedAfter(requestedAt, id)) {
        return;
    }
    ++goneCount;
    Note(id, Change::Removed);
    context.documents.Lose(id);
}

void ListMerge::Note(const QString& id, Change change)
{
    if (!changes.contains(id)) {
        changes[id] = change;
        order.append(id);
        return;
    }
    // Merges that were overtaken count too: what matters is the difference to the last report.
    auto& sum = changes[id];
    if (change == Change::Added) {
        sum = sum == Change::Removed ? Change::Changed : Change::Added;
    } else if (change == Change::Removed) {
        sum = sum == Change::Added ? Change::None : Change::Removed;
    } else if (sum != Change::Added) {
        sum = change;
    }
}

void ListMerge::Report()
{
    phase = Phase::Idle;
    const auto allChanges = std::exchange(changes, {});
    const auto allIds = std::exchange(order, {});
    const int count = std::exchange(listCount, 0);
    QStringList added;
    QStringList changed;
    QStringList removed;
    for (auto id = allIds.rbegin(); id != allIds.rend(); ++id) { // the order of the cloud
        switch (allChanges[*id]) {
        case Change::None:
            break;
        case Change::Added:
            added.append(*id);
            break;
        case Change::Changed:
            changed.append(*id);
            break;
        case Change::Removed:
            removed.append(*id);
            break;
        }
    }
    const auto guard = lifetime.Watch();
    if (goneCount >= minGoneTogether && 2 * goneCount >= heldCount) {
        emit context.session.ManyDocumentsGone(goneCount, heldCount);
    }
    if (guard) {
        emit context.session.ListRefreshed(added, changed, removed);
    }
    for (int further = 1; further < count && guard; ++further) {
        emit context.session.ListRefreshed({}, {}, {}); // a request whose answer was overtaken ends too
    }
}

} // namespace Norlis::Host

#include "Histories.h"

#include <tests/support/Client.h>
#include <tests/support/FolderUnderTest.h>

#include <QDir>
#include <QSet>
#include <QTemporaryDir>

namespace Norlis::Test {

namespace {

/// One thing that the user of a folder as a cloud does, or somebody else behind the user's back.
struct FolderAction {
    enum Kind {
        Upload,
        UploadWithWrongHash,
        Replace,
        ReplaceWithWrongHash,
        Download,
        Remove,
        Quota,
        CancelUpload,
        CancelReplacement,
        CancelDownload,
        ReplaceWhileSomebodyWrites,
        ReplaceWhileSomebodyDeletes,
        SomebodyWrites,
        SomebodyDeletes,
        SomebodyRenames,
        SignInAnew,
    };

    Kind kind = Upload;
    int name = 0;
    int content = 0;
    int moment = 0; ///< when a request is given up, or somebody else acts
};

rc::Gen<FolderAction> AnyFolderAction()
{
    const auto kind = rc::gen::weightedElement<FolderAction::Kind>({
        {12, FolderAction::Upload},
        {2, FolderAction::UploadWithWrongHash},
        {8, FolderAction::Replace},
        {2, FolderAction::ReplaceWithWrongHash},
        {8, FolderAction::Download},
        {6, FolderAction::Remove},
        {2, FolderAction::Quota},
        {8, FolderAction::CancelUpload},
        {8, FolderAction::CancelReplacement},
        {5, FolderAction::CancelDownload},
        {3, FolderAction::ReplaceWhileSomebodyWrites},
        {3, FolderAction::ReplaceWhileSomebodyDeletes},
        {8, FolderAction::SomebodyWrites},
        {5, FolderAction::SomebodyDeletes},
        {4, FolderAction::SomebodyRenames},
        {1, FolderAction::SignInAnew},
    });
    return rc::gen::build<FolderAction>(
        rc::gen::set(&FolderAction::kind, kind), rc::gen::set(&FolderAction::name, AnyBelow(5)),
        rc::gen::set(&FolderAction::content, AnyBelow(6)), rc::gen::set(&FolderAction::moment, AnyBelow(40)));
}

std::ostream& operator<<(std::ostream& stream, const FolderAction& action)
{
    static const char* const names[] = {"Upload",
                                        "Upload with a wrong hash",
                                        "Replace",
                                        "Replace with a wrong hash",
                                        "Download",
                                        "Remove",
                                        "Quota, not of",
                                        "give up an upload of",
                                        "give up a replacement of",
                                        "give up a download of",
                                        "Replace, while somebody writes",
                                        "Replace, while somebody deletes",
                                        "somebody writes",
                                        "somebody deletes",
                                        "somebody renames",
                                        "sign in anew, not with"};
    return stream << "\n  " << names[action.kind] << " document " << action.name << ", content " << action.content
                  << ", moment " << action.moment;
}

const QStringList& Names()
{
    static const QStringList names = {"a.pdf", "b \u00fc.pdf", "no suffix", "a (2).pdf", "a (3).pdf"};
    return names;
}

/// Of which each is told apart by its size; one is empty, one takes several reads.
QByteArray Content(int number)
{
    static const QVector<int> sizes = {3, 0, 17, 70'000, 300'000, 1'500'000};
    return QByteArray(sizes[number], char('a' + number));
}

/// A folder as what it is to its users, a map from names to contents, beside the service over a real one.
class FolderHistory {
public:
    void Play(const std::vector<FolderAction>& actions)
    {
        RC_ASSERT(client->SignIn());
        for (const FolderAction& action : actions) {
            Do(action);
            CompareAll();
        }
    }

private:
    using Sharing = Social::NorlisCloudSharingResult;
    using Upload = AnswerPtr<Sharing>;

    std::unique_ptr<Client> NewClient()
    {
        auto settings = cloud.Settings();
        settings.replaceableFiles = Social::OAuth2::ReplaceableFiles::All; // all downloads have one target
        return std::make_unique<Client>(settings);
    }

    void Do(const FolderAction& action)
    {
        const QString name = Names().at(action.name);
        const QString freshName = Names().at(action.name % 3); // those with a number are made by the service
        const QByteArray content = Content(action.content);
        switch (action.kind) {
        case FolderAction::Upload:
            return Uploaded(StartUpload(freshName, content, {}, Md5Of(content)), freshName, content);
        case FolderAction::UploadWithWrongHash:
            return Refused(StartUpload(freshName, content, {}, Md5Of("other")), {});
        case FolderAction::Replace:
            return Replaced(StartUpload("source.pdf", content, IdOf(name), {}), name, content);
        case FolderAction::ReplaceWithWrongHash:
            return Refused(StartUpload("source.pdf", content, IdOf(name), Md5Of("other")), IdOf(name));
        case FolderAction::Download:
            return Downloaded(client->Download(IdOf(name), Target()), name);
        case FolderAction::Remove:
            return Removed(client->Remove(IdOf(name)), name);
        case FolderAction::Quota:
            return CompareQuota();
        case FolderAction::CancelUpload:
            return GiveUpUpload(action, freshName, content);
        case FolderAction::CancelReplacement:
            return GiveUpReplacement(action, name, content);
        case FolderAction::CancelDownload:
            return GiveUpDownload(action, name);
        case FolderAction::ReplaceWhileSomebodyWrites:
            return ReplaceMeanwhile(action, name, content, QByteArray("somebody else's"));
        case FolderAction::ReplaceWhileSomebodyDeletes:
            return ReplaceMeanwhile(action, name, content, {});
        case FolderAction::SomebodyWrites:
            cloud.Put(name, content);
            documents[name] = content;
            return;
        case FolderAction::SomebodyDeletes:
            if (documents.remove(name) > 0) {
                cloud.Take(name);
            }
            return;
        case FolderAction::SomebodyRenames:
            return Rename(name, Names().at(action.content % Names().size()));
        case FolderAction::SignInAnew:
            client = NewClient();
            RC_ASSERT(client->SignIn());
            sent.clear();
            unsure.clear();
            return;
        }
    }

    Upload StartUpload(const QString& sourceName, const QByteArray& content, const QString& id, const QString& md5)
    {
        WriteFile(local.filePath(sourceName), content);
        return client->Upload(local.filePath(sourceName), id, md5);
    }

    void Uploaded(const Upload& upload, const QString& name, const QByteArray& content)
    {
        RC_ASSERT(upload->Succeeds());
        const QString stored = FreeName(name);
        RC_ASSERT(upload->payload.fileName.toStdString() == stored.toStdString());
        documents[stored] = content;
        Know(stored, upload->payload.id);
    }

    void Replaced(const Upload& upload, const QString& name, const QByteArray& content)
    {
        if (!documents.contains(name)) {
            return Refused(upload, IdOf(name));
        }
        RC_ASSERT(WaitUntil([&] { return upload->Came(); }));
        const bool isConflict = sent.contains(name) && sent[name] != documents[name] && documents[name] != content;
        if (isConflict || (unsure.contains(name) && upload->result != Social::Success)) {
            return Refused(upload, IdOf(name));
        }
        RC_ASSERT(upload->Succeeds());
        RC_ASSERT(upload->payload.fileName.toStdString() == name.toStdString());
        documents[name] = content;
        sent[name] = content;
        unsure.remove(name);
        Know(name, upload->payload.id);
    }

    /// What a failed upload reports is deleted by whoever hears of it; it must never be what was to be replaced.
    void Refused(const Upload& upload, const QString& replaced)
    {
        RC_ASSERT(upload->Fails());
        const QString left = upload->payload.id;
        if (!left.isEmpty()) {
            RC_ASSERT(left.toStdString() != replaced.toStdString());
            RC_ASSERT(client->Remove(left)->Succeeds());
        }
    }

    void Downloaded(const AnswerPtr<>& download, const QString& name)
    {
        if (documents.contains(name)) {
            RC_ASSERT(download->Succeeds());
            RC_ASSERT((ReadFile(Target()) == documents[name]));
        } else {
            RC_ASSERT(download->Fails());
            RC_ASSERT(!QFile::exists(Target()));
        }
        QFile::remove(Target());
    }

    void Removed(const AnswerPtr<>& removal, const QString& name)
    {
        if (documents.remove(name) > 0) {
            RC_ASSERT(removal->Succeeds());
        } else {
            RC_ASSERT(removal->Fails());
        }
    }

    /// It may be complete before it is given up.
    void GiveUpUpload(const FolderAction& action, const QString& name, const QByteArray& content)
    {
        const Upload upload = StartUpload(name, content, {}, {});
        Await(action.moment, [&] { return QFile::exists(cloud.PathOf(FreeName(name))); });
        if (upload->Came()) {
            return Uploaded(upload, name, content);
        }
        client->Cancel(upload->operation);
        Settle();
        RC_ASSERT(!upload->Came());
    }

    /// Leaves the old or the new content.
    void GiveUpReplacement(const FolderAction& action, const QString& name, const QByteArray& content)
    {
        const Upload upload = StartUpload("source.pdf", content, IdOf(name), {});
        Await(action.moment, [&] { return !documents.contains(name) || cloud.Get(name) == content; });
        if (upload->Came()) {
            return Replaced(upload, name, content);
        }
        client->Cancel(upload->operation);
        Settle();
        RC_ASSERT(!upload->Came());
        if (documents.contains(name) && cloud.Get(name) == content) {
            documents[name] = content;
        }
        BeUnsure(name);
    }

    void GiveUpDownload(const FolderAction& action, const QString& name)
    {
        WriteFile(Target(), "old");
        const auto download = client->Download(IdOf(name), Target());
        Await(action.moment, [&] { return !documents.contains(name) || ReadFile(Target()) != QByteArray("old"); });
        if (!download->Came()) {
            client->Cancel(download->operation);
        }
        const auto atOnce = ReadFile(Target());
        RC_ASSERT((atOnce == QByteArray("old") || (documents.contains(name) && atOnce == documents[name])));
        Settle();
        RC_ASSERT((ReadFile(Target()) == atOnce));
        QFile::remove(Target());
    }

    /// Who comes first is not told; whatever the outcome, each content is whole.
    void ReplaceMeanwhile(const FolderAction& action, const QString& name, const QByteArray& content,
                          const std::optional<QByteArray>& others)
    {
        if (!documents.contains(name)) {
            return;
        }
        const QByteArray old = documents[name];
        const QString id = IdOf(name);
        const Upload upload = StartUpload("source.pdf", content, id, {});
        Await(action.moment, [&] { return cloud.Get(name) == content; });
        QFile::remove(cloud.PathOf(name));
        if (others) {
            cloud.Put(name, *others);
        }
        RC_ASSERT(WaitUntil([&] { return upload->Came(); }));
        if (upload->result != Social::Success) {
            Refused(upload, id);
        }
        BeUnsure(name);
        Settle();
        const auto found = cloud.Get(name);
        if (found) {
            RC_ASSERT((*found == content || *found == old || found == others));
            documents[name] = *found;
        } else {
            RC_ASSERT(!others);
            documents.remove(name);
        }
    }

    void Rename(const QString& from, const QString& to)
    {
        if (from != to && documents.contains(from)) {
            QFile::remove(cloud.PathOf(to));
            RC_ASSERT(QFile::rename(cloud.PathOf(from), cloud.PathOf(to)));
            documents[to] = documents.take(from);
        }
    }

    /// "a.pdf", "a (2).pdf", "a (3).pdf"
    QString FreeName(const QString& name) const
    {
        const int dot = name.lastIndexOf('.') < 0 ? name.size() : name.lastIndexOf('.');
        QString free = name;
        for (int number = 2; documents.contains(free); ++number) {
            free = name.left(dot) + " (" + QString::number(number) + ')' + name.mid(dot);
        }
        return free;
    }

    /// The id of the document of a name, or the one that it had when it was last there.
    QString IdOf(const QString& name) const
    {
        return ids.value(name, "unknown");
    }

    /// A document keeps its id for as long as it has its name.
    void Know(const QString& name, const QString& id)
    {
        RC_ASSERT(!id.isEmpty());
        RC_ASSERT(ids.value(name, id).toStdString() == id.toStdString());
        ids[name] = id;
    }

    /// Which version the local file counts as is not told.
    void BeUnsure(const QString& name)
    {
        sent.remove(name);
        unsure.insert(name);
    }

    QString Target() const
    {
        return local.filePath("target.pdf");
    }

    /// Lets a request run for some turns of the event loop; or, every third time, until it has had its effect, while
    /// the answer is still on its way.
    template <typename Condition>
    static void Await(int moment, Condition isDone)
    {
        const bool awaitsEffect = moment % 3 == 0;
        for (int turn = 0; turn < (awaitsEffect ? 1 : moment); ++turn) {
            QCoreApplication::processEvents();
        }
        if (awaitsEffect) {
            RC_ASSERT(BlockUntil(isDone));
        }
    }

    /// The service hears of a cancellation before it hears of what is asked for afterwards.
    void Settle()
    {
        RC_ASSERT(client->List()->Succeeds());
    }

    /// The folder, what is listed of it, and the model.
    void CompareAll()
    {
        const QStringList names = documents.keys();
        // The service may be writing what it remembers of the folder.
        if (!WaitUntil([&] { return cloud.Content() == names; })) {
            RC_FAIL("expected " + names.join(", ").toStdString() + "; there is " +
                    cloud.Content().join(", ").toStdString());
        }
        for (auto document = documents.begin(); document != documents.end(); ++document) {
            RC_ASSERT((cloud.Get(document.key()) == document.value()));
        }
        const auto list = client->List();
        RC_ASSERT(list->Succeeds());
        RC_ASSERT(list->payload.size() == documents.size());
        for (const CloudFile& entry : qAsConst(list->payload)) {
            RC_ASSERT(documents.contains(entry.name));
            RC_ASSERT(entry.size == documents[entry.name].size());
            RC_ASSERT(entry.md5Hash.toStdString() == Md5Of(documents[entry.name]).toStdString());
            Know(entry.name, entry.id);
        }
        for (const QString& name : FilesBelow(local.path())) {
            RC_ASSERT((name == "source.pdf" || Names().contains(name)));
        }
    }

    void CompareQuota()
    {
        const auto quota = client->Quota();
        RC_ASSERT(quota->Succeeds());
        qint64 bytes = 0;
        for (const QByteArray& content : qAsConst(documents)) {
            bytes += content.size();
        }
        const qint64 mebibyte = 1024 * 1024;
        RC_ASSERT(quota->payload["pdf"].used == (bytes + mebibyte - 1) / mebibyte);
    }

    FolderUnderTest cloud;
    std::unique_ptr<Client> client = NewClient();
    QTemporaryDir local;
    QMap<QString, QByteArray> documents; ///< the model
    QMap<QString, QString> ids;          ///< by name, of all documents that ever were
    QMap<QString, QByteArray> sent;      ///< by name, what "source.pdf" replaced the document with
    QSet<QString> unsure;                ///< names of documents with which it is not known
};

TEST(FolderModelTest, AnyHistoryLeavesWhatTheModelHolds)
{
    // What depends on the moment may not happen again when the failed case is shrunk; the first failure tells.
    std::string firstFailure;
    CheckRandomly(
        [&] {
            const auto actions = *rc::gen::scale(0.2, rc::gen::container<std::vector<FolderAction>>(AnyFolderAction()));
            try {
                FolderHistory().Play(actions);
            } catch (const rc::detail::CaseResult& failure) {
                if (firstFailure.empty()) {
                    firstFailure = rc::toString(actions) + '\n' + failure.description;
                }
                throw;
            }
        },
        200);
    EXPECT_EQ(firstFailure, "");
}

} // namespace

} // namespace Norlis::Test

#include <host/session/ListMerge.h>
#include <host/session/Records.h>
#include <tests/support/SessionTest.h>
#include <tests/support/Waiting.h>

#include <QFile>

#include <sys/inotify.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

/// The merge of a files list by itself, to see what it asks for.
class ListMergeTest : public SessionTest {};

/// Counts what it is asked.
class AskedHashes : public Host::Md5HashCalculator {
public:
    std::string CalculateHash(const ioPath& path) override
    {
        ++asked[Host::ToText(path)];
        return Md5HashCalculator::CalculateHash(path);
    }

    QMap<QString, int> asked; ///< how often, by path
};

/// The names of a folder's files that have been opened, one for each time.
class OpenedFiles {
public:
    explicit OpenedFiles(const QString& folder)
    {
        inotify_add_watch(events, QFile::encodeName(folder), IN_OPEN);
    }

    ~OpenedFiles()
    {
        close(events);
    }

    /// Since the last call.
    QStringList Names() const
    {
        QStringList names;
        alignas(inotify_event) char buffer[16'384];
        for (ssize_t length = read(events, buffer, sizeof buffer); length > 0;
             length = read(events, buffer, sizeof buffer)) {
            const char* next = buffer;
            while (next < buffer + length) {
                const auto* event = reinterpret_cast<const inotify_event*>(next);
                if ((event->mask & IN_ISDIR) == 0) {
                    names.append(QFile::decodeName(event->name));
                }
                next += sizeof(inotify_event) + event->len;
            }
        }
        names.sort();
        return names;
    }

private:
    const int events = inotify_init1(IN_NONBLOCK);
};

TEST_F(ListMergeTest, LocalCopyIsAskedForOncePerListAndReadOnlyWhenItHasChanged)
{
    const auto hashes = std::make_shared<AskedHashes>();
    const auto files = std::make_shared<Host::LocalFileSystem>();
    const Host::PictureFolder pictures(root.filePath("pictures"));
    Host::DocumentIndex documents(root.filePath("counted.sqlite"), pictures, files, hashes);
    Host::SessionCloud cloud(*session, protocol, hashes, files, pictures);
    ChangeJournal journal;
    Host::ListMerge merge({*session, cloud, documents, pictures, journal, *hashes, *files}, [] {});
    const auto recordOf = [](const QString& id, const QByteArray& content) {
        const auto entry = EntryOf(id, content);
        return std::make_shared<PDF::FileInfo>(
            PDF::FileInfo::CloudInfo(entry.id.toStdString(), entry.name.toStdString(), static_cast<quint64>(entry.size),
                                     true, QUrl(), QDateTime(), QDateTime(), 0, entry.md5Hash.toStdString()));
    };
    const OpenedFiles opened(folder);
    const auto mergeList = [&](const QSet<int>& changedInCloud) {
        Host::ListMerge::Files list;
        for (int number = 0; number < 50; ++number) {
            list << recordOf(QString::number(number), changedInCloud.contains(number) ? "edition 2" : "edition 1");
        }
        hashes->asked.clear();
        opened.Names();
        merge.Start(list, journal.NoteRequest(), false);
        ASSERT_TRUE(WaitUntil([&] { return merge.IsReady(); }));
        while (merge.IsActive()) {
            merge.Step();
        }
    };

    QMap<QString, int> once;
    for (int number = 0; number < 25; ++number) { // the others are in the cloud only
        const auto record = recordOf(QString::number(number), "edition 1");
        const auto path = Write(QString::number(number) + ".pdf", "edition 1");
        record->SetPath(Host::ToPath(path), HashOf("edition 1"), HashOf("edition 1"));
        documents.Replace(record);
        once[path] = 1;
    }
    mergeList({});
    EXPECT_EQ(opened.Names().size(), 25);
    EXPECT_EQ(hashes->asked, once);

    Write("1.pdf", "edition 1b");
    Write("2.pdf", "edition 1b");
    mergeList({2, 3, 40}); // 1: changed here, 2: on both sides, 3 and 40: in the cloud
    EXPECT_EQ(opened.Names(), QStringList({"1.pdf", "2.pdf"}));
    EXPECT_EQ(hashes->asked, once);

    mergeList({2, 3, 40});
    EXPECT_EQ(opened.Names(), QStringList());
    EXPECT_EQ(hashes->asked, once);
    for (const auto& [id, status] : {std::pair("0", Status::InSync), std::pair("1", Status::ChangedLocally),
                                     std::pair("2", Status::ChangedOnBothSides), std::pair("3", Status::ChangedInCloud),
                                     std::pair("40", Status::OnlyInCloud)}) {
        EXPECT_EQ(documents.List().GetFileInfo(id)->GetCloudStatus(), status) << id;
    }
}

} // namespace

} // namespace Norlis::Test

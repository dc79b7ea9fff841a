#include <tests/support/SessionTest.h>

#include <host/store/SqliteCloudInfoStorage.h>

#include <tests/support/FileSizeLimit.h>
#include <tests/support/SlotRunner.h>

#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QPixmap>
#include <QTest>

#include <stdexcept>

namespace Norlis::Test {

namespace {

using Host::CloudSession;

class CloudSessionLifetimeTest : public SessionTest {};

TEST_F(CloudSessionLifetimeTest, ListSurvivesARestart)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text"), EntryOf("2")});
    Reopen();

    EXPECT_EQ(Ids(), QStringList({"2", "1"}));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), path.toStdString());
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("text"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);

    Events();
    Refresh({EntryOf("1", "text"), EntryOf("2")});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)")); // only the time was unknown
    EXPECT_TRUE(Held("2")->GetRedactableCloudInfo()->GetModifyTime().isValid());
    Refresh({EntryOf("1", "second edition")});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~1, -2)"));
    EXPECT_EQ(StatusOf("1"), Status::ChangedInCloud);
}

TEST_F(CloudSessionLifetimeTest, DocumentBeyondFourGigabytesDoesNotLockTheListOut)
{
    auto big = EntryOf("big");
    big.size = Q_INT64_C(5) * 1024 * 1024 * 1024;
    Refresh({big, EntryOf("small")});
    ASSERT_NO_THROW(Reopen());
    EXPECT_EQ(Ids(), QStringList({"small", "big"}));

    Refresh({big, EntryOf("small")});
    EXPECT_EQ(Held("big")->GetCloudInfo()->GetSize(), static_cast<quint64>(big.size));
    EXPECT_EQ(Held("small")->GetCloudInfo()->GetSize(), 7u);
}

TEST_F(CloudSessionLifetimeTest, DamagedNumbersAreDoneWithout)
{
    session.reset();
    {
        Host::SqliteCloudInfoStorage storage(dataFolder + "/documents.sqlite");
        storage.SetValue("1", "cloud_size", "");
        storage.SetValue("1", "is_private", "yes");
        storage.SetValue("1", "lifetime_in_sec", "99999999999");
        storage.SetValue("1", "file_name", "a.pdf");
    }
    ASSERT_NO_THROW(Open());
    EXPECT_EQ(session->Documents().GetDocumentName(0), "a.pdf");
}

TEST_F(CloudSessionLifetimeTest, SavingAndClosingWritesTheListAndReleasesTheStore)
{
    Refresh({EntryOf("1")});
    session->SaveAndClose();
    {
        Host::SqliteCloudInfoStorage storage(dataFolder + "/documents.sqlite");
        EXPECT_EQ(storage.ReadAll().count("1"), 1u);
    }
    session.reset();
}

TEST_F(CloudSessionLifetimeTest, OnAFullDiskSavingSaysSoAndTheListOfBeforeStays)
{
    Refresh({EntryOf("1")});
    Reopen();
    QList<CloudEntry> entries = {EntryOf("1")};
    for (int number = 2; number < 100; ++number) {
        entries.append(EntryOf(QString::number(number)));
    }
    for (const bool closes : {true, false}) {
        Refresh(entries);
        const FileSizeLimit full(20'000);
        if (closes) {
            try {
                session->SaveAndClose();
                ADD_FAILURE() << "nobody noticed";
            } catch (const std::runtime_error& error) {
                EXPECT_THAT(error.what(), HasSubstr("documents.sqlite"));
            }
        }
        Reopen();
        EXPECT_EQ(Ids(), QStringList("1"));
    }
    Refresh(entries);
    Reopen();
    EXPECT_EQ(Ids().size(), entries.size());
}

TEST_F(CloudSessionLifetimeTest, ClosingCancelsWhatRunsAndEmitsNothing)
{
    for (const bool closes : {true, false}) {
        Refresh({EntryOf("1", "text")});
        session->Download("1", folder);
        session->Upload({Write("a.pdf", "a")});
        ASSERT_TRUE(WaitForCalls("downloadFile", protocol->CallsOf("downloadFile").size() + 1));
        ASSERT_TRUE(WaitForCalls("uploadFile", protocol->CallsOf("uploadFile").size() + 1));
        Events();
        const auto requests = protocol->Running();
        if (closes) {
            session->SaveAndClose();
        }
        session.reset();

        EXPECT_THAT(protocol->Running(), IsEmpty());
        EXPECT_THAT(Events(), IsEmpty());
        EXPECT_EQ(FilesIn(folder), QStringList("a.pdf"));
        for (const auto id : requests) {
            protocol->Answer(id, Social::Success); // too late
        }
        Open();
    }
}

TEST_F(CloudSessionLifetimeTest, WorkThatWasOnlyBegunEndsSilentlyWithTheSession)
{
    Refresh({EntryOf("1")});
    Events();
    session->Upload({Write("a.pdf", "a"), PathOf("missing.pdf")});
    session->Download("1", folder);
    session->Remove("unknown");
    session->FetchPreviews("1");
    session->Refresh();
    session->SaveAndClose();
    QCoreApplication::processEvents();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(CloudSessionLifetimeTest, SecondSessionOverTheSameDataWorksAndNeitherTakesBackWhatTheOtherDid)
{
    Refresh({EntryOf("1", "one"), EntryOf("2", "two"), EntryOf("3", "three")});
    Reopen();
    const auto first = std::move(session);
    Open(); // the second one, which does everything and ends first
    Download("1", "one");
    Refresh({EntryOf("1", "one"), EntryOf("2", "newer two")});
    session->SaveAndClose();

    first->SaveAndClose();

    Open();
    EXPECT_THAT(Ids(), UnorderedElementsAre("1", "2"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_EQ(Held("2")->GetRedactableCloudInfo()->GetMd5Hash(), HashOf("newer two"));
}

TEST_F(CloudSessionLifetimeTest, DataFolderIsPrivateAndOneThatCannotBeMadeIsRefused)
{
    EXPECT_EQ(QFile::permissions(dataFolder) &
                  (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther | QFile::WriteOther),
              QFile::Permissions());
    const auto file = Write("file", "");
    EXPECT_THROW(CloudSession(file + "/data", protocol), std::runtime_error);
    EXPECT_THROW(CloudSession(QString(), protocol), std::runtime_error);
}

TEST_F(CloudSessionLifetimeTest, ServiceThatThereIsNotIsRefused)
{
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl("gopher://cloud.example");
    EXPECT_THROW(CloudSession(root.filePath("other"), authInfo), std::invalid_argument);
}

/// Deletes the session inside each signal that it, its list or its cloud manager emits, in the course of everything
/// that a user does.
class CloudSessionReentranceTest : public SessionTest {
protected:
    /// Answers every request until nothing is running, as long as the session lives.
    void LetCloudWork()
    {
        QPixmap picture(4, 4);
        picture.fill(Qt::red);
        std::set<qint64> answered;
        const auto answer = [&] {
            const auto calls = protocol->calls;
            for (const auto& call : calls) {
                if (session && protocol->Running().count(call.id) != 0 && answered.insert(call.id).second) {
                    AnswerOne(call, picture);
                }
            }
            return !session || done;
        };
        ASSERT_TRUE(QTest::qWaitFor(answer, 20'000));
    }

    void AnswerOne(const ScriptedProtocol::Call& call, const QPixmap& picture)
    {
        const bool fails = failing.count(call.operation) != 0;
        if (fails) {
            protocol->Answer(call.id, Social::Error);
        } else if (call.operation == "retriveFileList") {
            protocol->Answer(call.id, Social::Success, lists.empty() ? QList<CloudEntry>() : lists.takeFirst());
        } else if (call.operation == "uploadFile") {
            protocol->Answer(call.id, Social::Success, SharingOf("uploaded", "a.pdf"));
        } else if (call.operation == "retrievePreview") {
            protocol->Answer(call.id, Social::Success, picture);
        } else if (call.operation == "downloadFile") {
            QFile file(call.fields.last()); // whatever its key
            for (const auto& value : call.fields) {
                if (value.startsWith('/')) {
                    file.setFileName(value);
                }
            }
            file.open(QFile::WriteOnly);
            file.write("text");
            file.close();
            protocol->Answer(call.id, Social::Success);
        } else {
            protocol->Answer(call.id, Social::Success);
        }
    }

    void DoEverything()
    {
        done = false;
        lists = {{EntryOf("1", "text"), EntryOf("2", "text"), EntryOf("3", "text")},
                 {EntryOf("1", "text"), EntryOf("2", "second edition"), EntryOf("uploaded", "a")}};
        const auto path = Write("a.pdf", "a");
        QFile::remove(PathOf("1.pdf"));
        const auto current = session.get();
        const auto next = [&](auto signal, auto action) {
            QObject::connect(current, signal, current, action, Qt::QueuedConnection);
        };
        // One step leads to the next.
        next(&CloudSession::ListRefreshed, [this, isFirst = true]() mutable {
            if (std::exchange(isFirst, false)) {
                session->ShowPreviews({"1", "2", "3"});
                session->Download("1", folder);
            } else {
                session->Remove("unknown");
            }
        });
        next(&CloudSession::DocumentDownloaded, [this, path] { session->Upload({path}); });
        next(&CloudSession::DocumentUploaded, [this] { session->FetchPreviews("2"); });
        next(&CloudSession::PreviewStored, [this, pictures = 0](const QString& id, const QString& size) mutable {
            if (id == "2" && size == "large" && ++pictures == 2) {
                session->UploadChanges("unknown");
                session->Remove("1");
            }
        });
        next(&CloudSession::DocumentRemoved, [this] { session->Refresh(); });
        next(&CloudSession::Failed, [this](const Host::CloudProblem& failed) {
            done = failed.request == Host::CloudProblem::Request::Remove;
        });
        session->Refresh();
        LetCloudWork();
    }

    bool done = false;
    QList<QList<CloudEntry>> lists;
    std::set<std::string> failing;
};

TEST_F(CloudSessionReentranceTest, SlotOfAnySignalMayDeleteTheSession)
{
    DoEverything();
    ASSERT_TRUE(done);
    int deletions = 0;
    const auto tryAll = [&](auto sender) {
        const auto* metaObject = sender()->metaObject();
        for (int index = QObject::staticMetaObject.methodCount(); index < metaObject->methodCount(); ++index) {
            if (metaObject->method(index).methodType() != QMetaMethod::Signal) {
                continue;
            }
            session.reset();
            QDir(dataFolder).removeRecursively();
            Open();
            SlotRunner deleter([&] { session.reset(); });
            ASSERT_TRUE(deleter.ConnectTo(*sender(), sender()->metaObject()->method(index)));
            DoEverything();
            EXPECT_TRUE(done || !session) << metaObject->method(index).methodSignature().toStdString();
            deletions += session ? 0 : 1;
            if (!session) {
                Open();
            }
        }
    };
    tryAll([this]() -> QObject* { return session.get(); });
    tryAll([this]() -> QObject* { return &session->Documents(); });
    tryAll([this]() -> QObject* { return &session->Cloud(); });
    EXPECT_GE(deletions, 20);
}

TEST_F(CloudSessionReentranceTest, SlotOfAnErrorSignalMayDeleteTheSession)
{
    const auto afterFailure = [this](const std::string& operation, auto request) {
        session.reset();
        QDir(dataFolder).removeRecursively();
        Open();
        Refresh({EntryOf("1", "text")});
        SlotRunner deleter([&] { session.reset(); });
        ASSERT_TRUE(deleter.ConnectTo(*session, QMetaMethod::fromSignal(&CloudSession::Failed)));
        const auto calls = protocol->CallsOf(operation).size();
        request();
        ASSERT_TRUE(WaitForCalls(operation, calls + 1));
        Answer(operation, Social::Error);
        EXPECT_FALSE(session) << operation;
        EXPECT_THAT(protocol->Running(), IsEmpty());
    };
    const auto path = Write("a.pdf", "a");
    afterFailure("uploadFile", [&] { session->Upload({path}); });
    afterFailure("downloadFile", [&] { session->Download("1", folder); });
    afterFailure("deleteFile", [&] { session->Remove("1"); });
    afterFailure("retriveFileList", [&] { session->Refresh(); });
    afterFailure("userQuota", [&] { session->Cloud().UserQuota(); });
    EXPECT_EQ(FilesIn(folder), QStringList("a.pdf"));
}

} // namespace

} // namespace Norlis::Test

// The element as an interface in QML uses it, over a folder as the cloud.

#include "QmlTest.h"

#include <NorlisTestKit/FaultServer.h>
#include <tests/support/SlotRunner.h>

#include <QAbstractItemModel>
#include <QDirIterator>
#include <QMetaMethod>
#include <QQmlContext>
#include <QQmlExpression>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

QMetaMethod SignalOf(const QObject& object, const QByteArray& name)
{
    const auto& type = *object.metaObject();
    for (int index = 0; index < type.methodCount(); ++index) {
        if (type.method(index).methodType() == QMetaMethod::Signal && type.method(index).name() == name) {
            return type.method(index);
        }
    }
    ADD_FAILURE() << "there is no signal " << name.constData();
    return {};
}

class CloudDocumentsTest : public QmlTest {
protected:
    void Open(const QString& service)
    {
        cloud = Make("CloudDocuments { service: '" + service.toUtf8() + "'; dataFolder: '" + Local("data").toUtf8() +
                     "'; refreshInterval: 0\n"
                     "readonly property int onlyInCloud: CloudDocuments.OnlyInCloud\n"
                     "readonly property int inSync: CloudDocuments.InSync\n"
                     "readonly property int signedOut: CloudDocuments.SignedOut\n"
                     "readonly property int online: CloudDocuments.Online\n"
                     "readonly property int offline: CloudDocuments.Offline\n"
                     "readonly property int changedOnBothSides: CloudDocuments.ChangedOnBothSides }");
    }

    void OpenSignedIn()
    {
        Open(LocalUrl("cloud").toString());
        ASSERT_FALSE(EndOf("signIn()", "refreshed").isEmpty());
    }

    /// What an expression gives in the element.
    QVariant Do(const QString& javaScript)
    {
        QQmlExpression expression(engine.rootContext(), cloud.get(), javaScript);
        const auto value = expression.evaluate();
        EXPECT_FALSE(expression.hasError()) << qPrintable(expression.error().toString());
        return value;
    }

    /// The arguments with which a request ends in a signal.
    QVariantList EndOf(const QString& request, const QByteArray& signal)
    {
        QSignalSpy ended(cloud.get(), SignalOf(*cloud, signal));
        Do(request);
        EXPECT_TRUE(WaitUntil([&] { return !ended.isEmpty(); })) << qPrintable(request);
        return ended.value(0);
    }

    QVariantMap FailureOf(const QString& request)
    {
        return EndOf(request, "failed").value(0).toMap();
    }

    QStringList Names() const
    {
        return Column("name");
    }

    /// What the model tells of its rows by the name of a role.
    QStringList Column(const QByteArray& role) const
    {
        QStringList values;
        if (const auto model = cloud->property("documents").value<QAbstractItemModel*>()) {
            for (int row = 0; row < model->rowCount(); ++row) {
                values << model->index(row, 0).data(model->roleNames().key(role)).toString();
            }
        }
        return values;
    }

    static QString Setting(const QString& property, const QString& value)
    {
        return property + " = '" + value + '\'';
    }

    static QString Upload(const QString& file)
    {
        return "upload(['" + file + "'])";
    }

    QString Download(const QString& folder) const
    {
        return "download('" + IdOfOnly() + "', '" + folder + "')";
    }

    /// With the id of the only document.
    QString Call(const QString& function) const
    {
        return function + "('" + IdOfOnly() + "')";
    }

    QString IdOfOnly() const
    {
        return Column("id").value(0);
    }

    std::unique_ptr<QObject> cloud;
};

TEST_F(CloudDocumentsTest, SignsInAndShowsWhatIsInTheCloud)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    Open(LocalUrl("cloud").toString());
    EXPECT_FALSE(cloud->property("signedIn").toBool());
    EndOf("signIn()", "signedInChanged");
    EXPECT_TRUE(cloud->property("signedIn").toBool());
    ASSERT_TRUE(WaitUntil([&] { return !Names().isEmpty(); }));
    EXPECT_EQ(Names(), QStringList("plan.pdf"));
    EXPECT_EQ(Column("state"), Do("[onlyInCloud]").toStringList());
}

TEST_F(CloudDocumentsTest, UploadsFilesAsDialogsAndDropsNameThem)
{
    OpenSignedIn();
    WriteFile(Local("here/50% #1.pdf"), "plan");
    const QString file = LocalUrl("here/50% #1.pdf").toEncoded();
    const auto arguments = EndOf(Upload(file), "uploaded");
    EXPECT_EQ(arguments, QVariantList({Local("here/50% #1.pdf"), IdOfOnly()}));
    EXPECT_EQ(ReadFile(Local("cloud/50% #1.pdf")), "plan");
    EXPECT_EQ(Names(), QStringList("50% #1.pdf"));
    EXPECT_EQ(Column("state"), Do("[inSync]").toStringList());
    EXPECT_EQ(Do("documentAt('" + file + "')"), IdOfOnly());
}

TEST_F(CloudDocumentsTest, DownloadsIntoAFolderButOntoNoOtherFile)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    OpenSignedIn();
    const auto download = Download(LocalUrl("there").toString());
    EXPECT_EQ(EndOf(download, "downloaded"), QVariantList({IdOfOnly(), Local("there/plan.pdf")}));
    EXPECT_EQ(ReadFile(Local("there/plan.pdf")), "plan");

    WriteFile(Local("here/plan.pdf"), "notes");
    const auto problem = FailureOf(Download(LocalUrl("here").toString()));
    EXPECT_EQ(problem["request"], "download");
    EXPECT_EQ(problem["subject"], IdOfOnly());
    EXPECT_NE(problem["message"], QString());
    EXPECT_NE(problem["reason"], QString());
    EXPECT_NE(problem["advice"], QString());
    EXPECT_EQ(ReadFile(Local("here/plan.pdf")), "notes");
}

TEST_F(CloudDocumentsTest, WhatSomebodyElseHasChangedIsReplacedOnlyOnPurpose)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    OpenSignedIn();
    EndOf(Download(Local("here")), "downloaded");
    WriteFile(Local("here/plan.pdf"), "a better plan");
    WriteFile(Local("cloud/plan.pdf"), "somebody's plan");
    EXPECT_EQ(FailureOf(Call("uploadChanges"))["request"], "upload");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "somebody's plan");

    EndOf("refresh()", "refreshed");
    EXPECT_EQ(Column("state"), Do("[changedOnBothSides]").toStringList());
    EXPECT_EQ(FailureOf(Call("uploadChanges"))["request"], "upload");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "somebody's plan");
    EndOf(Call("replaceInCloud"), "uploaded");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "a better plan");
}

TEST_F(CloudDocumentsTest, OfTwoCopiesTheOneThatWasReadIsSent)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    OpenSignedIn();
    EndOf(Download(Local("here")), "downloaded");
    EndOf(Download(Local("there")), "downloaded");
    WriteFile(Local("here/plan.pdf"), "a better plan");
    const auto id = IdOfOnly();
    EXPECT_EQ(EndOf("readLocalCopy('" + Local("here/plan.pdf") + "')", "localCopyRead"),
              QVariantList({Local("here/plan.pdf"), id}));
    EndOf(Call("uploadChanges"), "uploaded");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "a better plan");
}

TEST_F(CloudDocumentsTest, RemovesADocumentFromTheCloud)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    OpenSignedIn();
    const auto id = IdOfOnly();
    EXPECT_EQ(EndOf(Call("remove"), "removed"), QVariantList({id}));
    EXPECT_EQ(Names(), QStringList());
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), std::nullopt);
}

TEST_F(CloudDocumentsTest, ADelayedRemovalHidesTheDocumentAndCanBeTakenBack)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    OpenSignedIn();
    const QString ids = "(['" + IdOfOnly() + "']";
    const auto isHidden = [this](const char* answer) {
        return WaitUntil([&] { return Column("hidden") == QStringList(answer); });
    };
    Do("removeLater" + ids + ", 3600000)");
    EXPECT_TRUE(isHidden("true"));
    Do("undoRemoval" + ids + ")");
    EXPECT_TRUE(isHidden("false"));
    EndOf("removeLater" + ids + ", 1)", "removed");
    EXPECT_EQ(Names(), QStringList());
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), std::nullopt);
}

TEST_F(CloudDocumentsTest, AsksForSignInWhereNobodyIsSignedIn)
{
    OpenSignedIn();
    EndOf("signOut()", "signedInChanged");
    EXPECT_FALSE(cloud->property("signedIn").toBool());
    QSignalSpy required(cloud.get(), SignalOf(*cloud, "signInRequired"));
    const auto failure = FailureOf("refresh()");
    EXPECT_EQ(failure["request"], "list");
    EXPECT_EQ(failure["kind"], "notSignedIn");
    EXPECT_EQ(required.count(), 1);
}

TEST_F(CloudDocumentsTest, FolderThatIsNotThereIsAFailureOfSignIn)
{
    Open(Local("missing"));
    const auto problem = FailureOf("signIn()");
    EXPECT_EQ(problem["request"], "signIn");
    EXPECT_THAT(problem["reason"].toString().toStdString(), HasSubstr("missing"));
    EXPECT_FALSE(cloud->property("signedIn").toBool());
}

TEST_F(CloudDocumentsTest, SettlesConflictsInEachWay)
{
    OpenSignedIn();
    WriteFile(Local("here/plan.pdf"), "plan");
    EndOf(Upload(Local("here/plan.pdf")), "uploaded");
    const auto change = [this](const QByteArray& theirs) {
        WriteFile(Local("here/plan.pdf"), "mine");
        WriteFile(Local("cloud/plan.pdf"), theirs);
        EndOf("readLocalCopy('" + Local("here/plan.pdf") + "')", "localCopyRead");
        Do("refresh()");
        EXPECT_TRUE(WaitUntil([&] { return Column("state") == Do("[changedOnBothSides]").toStringList(); }));
    };
    change("theirs");
    const QString id = IdOfOnly();
    EXPECT_EQ(FailureOf(Call("uploadChanges"))["kind"], "conflict");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "theirs");
    EndOf(Call("useCloudVersion"), "downloaded");
    EXPECT_EQ(ReadFile(Local("here/plan.pdf")), "theirs");
    change("theirs, newer");
    EndOf(Call("keepBoth"), "uploaded");
    EXPECT_EQ(Names().size(), 2);
    EXPECT_EQ(Do("documentNamed('plan.pdf')"), id);
    EndOf("downloadBeside('" + id + "', '" + Local("here") + "')", "downloaded");
    EXPECT_EQ(ReadFile(Local("here/plan (2).pdf")), "theirs, newer");
    WriteFile(Local("there/better.pdf"), "better");
    EndOf("replaceWith('" + id + "', '" + Local("there/better.pdf") + "')", "uploaded");
    EXPECT_EQ(ReadFile(Local("cloud/plan.pdf")), "better");
    EXPECT_TRUE(QDir(Do("viewingFolder('" + id + "')").toUrl().toLocalFile()).exists());
    EndOf("removeLater(['" + id + "'], 60000); prepareToClose()", "readyToClose");
    EXPECT_FALSE(ReadFile(Local("cloud/plan.pdf")));
}

TEST_F(CloudDocumentsTest, StaysSignedInWhileTheServerIsAway)
{
    TestKit::FaultServer server;
    WriteFile(Local("here/plan.pdf"), "plan");
    Open(server.Address().toString());
    EndOf("signIn('" + server.Password() + "')", "refreshed");
    EXPECT_TRUE(Do("connection === online").toBool());
    server.Stop();
    EXPECT_EQ(EndOf(Upload(Local("here/plan.pdf")), "uploadWaiting").value(0), Local("here/plan.pdf"));
    EXPECT_TRUE(WaitUntil([&] { return Do("connection === offline").toBool(); }));
    EXPECT_TRUE(Do("nextAttempt > new Date()").toBool());
    server.Start();
    EndOf("tryNow()", "uploaded");
    EXPECT_EQ(server.Names(), QStringList("plan.pdf"));
    EXPECT_TRUE(WaitUntil([&] { return Do("connection === online").toBool(); }));
    Do("signOut()");
    EXPECT_TRUE(Do("connection === signedOut").toBool());
}

TEST_F(CloudDocumentsTest, WhatIsNoServiceIsAFailureAndNotAnException)
{
    cloud = Make("CloudDocuments { property var problem; onFailed: function(told) { problem = told }\n"
                 "service: 'ftp://cloud.example/'; dataFolder: '" +
                 Local("data").toUtf8() + "' }");
    ASSERT_TRUE(WaitUntil([&] { return cloud->property("problem").isValid(); }));
    EXPECT_EQ(Do("problem.request"), "open");
    EXPECT_THAT(Do("problem.reason").toString().toStdString(), HasSubstr("ftp"));
    EXPECT_FALSE(Do("documents").value<QObject*>());

    for (const auto& [request, call] :
         {std::pair("signIn", "signIn('secret')"), std::pair("list", "refresh()"),
          std::pair("upload", "upload(['/plan.pdf'])"), std::pair("upload", "uploadChanges('1')"),
          std::pair("upload", "replaceInCloud('1')"), std::pair("download", "download('1', '/')"),
          std::pair("remove", "remove('1')")}) {
        const auto problem = FailureOf(call);
        EXPECT_EQ(problem["request"], request);
        EXPECT_THAT(problem["reason"].toString().toStdString(), HasSubstr("ftp"));
    }
    Do("signOut(); cancelUpload('/plan.pdf'); cancelDownload('1'); showPreviews(['1'])");
    EXPECT_EQ(Do("documentAt('/plan.pdf')"), QString());

    Do(Setting("service", Local("cloud")));
    EndOf("signIn()", "refreshed");
}

TEST_F(CloudDocumentsTest, RecordsThatCannotBeReadAreAFailureAndNotAnException)
{
    OpenSignedIn();
    cloud.reset();
    QDirIterator records(Local("data"), {"documents.sqlite"}, QDir::Files, QDirIterator::Subdirectories);
    ASSERT_TRUE(records.hasNext());
    WriteFile(records.next(), QByteArray(10'000, 'x'));

    Open(Local("cloud"));
    QSignalSpy failed(cloud.get(), SignalOf(*cloud, "failed"));
    ASSERT_TRUE(failed.wait());
    const auto problem = failed.value(0).value(0).toMap();
    EXPECT_EQ(problem["request"], "open");
    EXPECT_THAT(problem["reason"].toString().toStdString(), HasSubstr("documents.sqlite"));
}

TEST_F(CloudDocumentsTest, AnotherServiceHasItsOwnListInTheSameDataFolder)
{
    WriteFile(Local("cloud/plan.pdf"), "plan");
    WriteFile(Local("there/letter.pdf"), "letter");
    OpenSignedIn();
    QSignalSpy changed(cloud.get(), SignalOf(*cloud, "documentsChanged"));
    Do(Setting("service", Local("there")));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(cloud->property("signedIn").toBool());
    EXPECT_EQ(Names(), QStringList());
    EndOf("signIn()", "refreshed");
    EXPECT_EQ(Names(), QStringList("letter.pdf"));

    Do(Setting("service", Local("cloud")));
    EXPECT_EQ(Names(), QStringList("plan.pdf")) << "the list of the last time, before anybody signs in";
    Do(Setting("dataFolder", LocalUrl("other data").toString()));
    EXPECT_EQ(Names(), QStringList());
    EXPECT_TRUE(QDir(Local("other data")).exists());
    Do("service = ''");
    EXPECT_FALSE(Do("documents").value<QObject*>());
}

TEST_F(CloudDocumentsTest, RefreshesByItselfUnlessToldNotTo)
{
    OpenSignedIn();
    Do("refreshInterval = 50");
    WriteFile(Local("cloud/plan.pdf"), "plan");
    EXPECT_TRUE(WaitUntil([&] { return !Names().isEmpty(); }));
    Do("refreshInterval = -1");
    EXPECT_EQ(Do("refreshInterval"), 0);
}

/// Does each thing that ends in one of these signals, with a slot of that signal.
class CloudDocumentsSlotTest : public CloudDocumentsTest {
protected:
    void InEachSignal(const std::function<void()>& slot)
    {
        const std::vector<std::pair<QByteArray, std::function<QString()>>> ways = {
            {"serviceChanged", [this] { return Setting("service", Local("there")); }},
            {"dataFolderChanged", [this] { return Setting("dataFolder", Local("other data")); }},
            {"refreshIntervalChanged", [] { return "refreshInterval = 1"; }},
            {"documentsChanged", [this] { return Setting("service", Local("there")); }},
            {"signedInChanged", [] { return "signOut()"; }},
            {"signedInChanged", [this] { return Setting("service", Local("there")); }},
            {"signInRequired", [] { return "signOut(); refresh()"; }},
            {"failed", [] { return "remove('unknown')"; }},
            {"failed", [] { return Setting("service", "ftp://cloud.example/"); }},
            {"refreshed", [] { return "refresh()"; }},
            {"uploadProgress", [this] { return Upload(Local("here/new.pdf")); }},
            {"uploaded", [this] { return Upload(Local("here/new.pdf")); }},
            {"downloadProgress", [this] { return Download(Local("there")); }},
            {"downloaded", [this] { return Download(Local("there")); }},
            {"removed", [this] { return Call("remove"); }},
        };
        for (const auto& [signal, request] : ways) {
            QDir(root.path()).removeRecursively();
            MakeFolders();
            WriteFile(Local("cloud/plan.pdf"), "plan");
            WriteFile(Local("here/new.pdf"), "new");
            OpenSignedIn();
            SCOPED_TRACE(signal.toStdString() + " of " + request().toStdString());
            SlotRunner runner(slot);
            ASSERT_TRUE(runner.ConnectTo(*cloud, SignalOf(*cloud, signal)));
            Do(request());
            EXPECT_TRUE(WaitUntil([&] { return runner.runs > 0; }));
            cloud.reset();
        }
    }
};

TEST_F(CloudDocumentsSlotTest, MayDestroyTheElement)
{
    InEachSignal([this] { cloud.reset(); });
}

TEST_F(CloudDocumentsSlotTest, MayOpenAnotherCloud)
{
    InEachSignal([this] { cloud->setProperty("service", Local("here")); });
}

TEST_F(CloudDocumentsTest, HandlerInQmlMayDestroyTheElement)
{
    const auto page = Make("Item { property var cloud: Qt.createQmlObject(\"import Norlis.Cloud 1.0; CloudDocuments {"
                           "service: '" +
                           Local("cloud").toUtf8() + "'; dataFolder: '" + Local("data").toUtf8() +
                           "'; onRefreshed: destroy() }\", this)\n"
                           "Component.onCompleted: cloud.signIn() }");
    EXPECT_TRUE(WaitUntil([&] { return !page->property("cloud").value<QObject*>(); }));
}

} // namespace

} // namespace Norlis::Test

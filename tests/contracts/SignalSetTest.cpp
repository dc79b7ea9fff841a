#include <contracts/AbstractCloudManager.h>
#include <contracts/AbstractFileManager.h>
#include <NorlisTestKit/Records.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

Q_DECLARE_METATYPE(std::string)

namespace Norlis::Test {

using namespace TestKit;

namespace {

using PDF::AbstractFileManager;
using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using testing::ElementsAre;
using Record = std::shared_ptr<FileInfo>;
using ConstRecord = std::shared_ptr<const FileInfo>;
using Records = QList<Record>;
using PreviewSize = FileInfo::PreviewSize;

// Managers that do nothing, for the sake of the signals that they inherit.

class SilentFileManager : public AbstractFileManager {
public:
    void SetImageGetCallback(const std::function<QImage(const QString&)>&) override {}
    std::string GetIdByPath(const ioPath&) const override
    {
        return {};
    }
    void Add(const Record&) override {}
    void Remove(const Record&) override {}
    void Rename(const QStringList&, const QString&) override {}
    void Clear() override {}
    void Update(const ConstRecord&) override {}
    int FilesCount() const override
    {
        return 0;
    }
    int Limit() const override
    {
        return 0;
    }
    Record GetFileInfo(const QString&) const override
    {
        return {};
    }
    QString GetDocumentName(int) const override
    {
        return {};
    }
    QMap<QString, QVariant> GetPreviewsSet(int) const override
    {
        return {};
    }
    QString GetDocumentId(int) const override
    {
        return {};
    }
    QString GetDocumentPath(int) const override
    {
        return {};
    }
    QDateTime GetModifiedDateTime(int) const override
    {
        return {};
    }
    int GetDocumentState(int) const override
    {
        return 0;
    }
    int GetFileSize(int) const override
    {
        return 0;
    }
};

class SilentCloudManager : public AbstractCloudManager {
public:
    void Authorization(const QString&) override {}
    void Logout() override {}
    void Upload(const Record&) override {}
    void Upload(const QString&) override {}
    void Upload(const QList<QString>&) override {}
    void Download(const Record&, const QString&) override {}
    void Download(const Records&, const QString&) override {}
    void RetrieveFilesList() override {}
    void RemoveFile(const Record&) override {}
    void CancelUploading(const QString&) override {}
    void CancelDownloading(const Record&) override {}
    void UserQuota() override {}
    void RetrieveFilePreview(const Record&, PreviewSize, const QSize&) override {}
};

template <typename Tuple, size_t... Index>
Tuple TupleOf(const QVariantList& arguments, std::index_sequence<Index...>)
{
    return {arguments.at(Index).template value<std::tuple_element_t<Index, Tuple>>()...};
}

/// A spy must see the arguments of a signal, and a queued connection must deliver them.
template <typename Manager, typename... Args>
void ExpectDelivered(Manager& manager, void (Manager::*signal)(Args...), const std::decay_t<Args>&... arguments)
{
    using Tuple = std::tuple<std::decay_t<Args>...>;
    const Tuple expected(arguments...);
    const auto name = QMetaMethod::fromSignal(signal).methodSignature().toStdString();
    QSignalSpy spy(&manager, signal);
    ASSERT_TRUE(spy.isValid()) << name;
    std::vector<Tuple> queued;
    QObject receiver;
    QObject::connect(
        &manager, signal, &receiver, [&](const std::decay_t<Args>&... received) { queued.emplace_back(received...); },
        Qt::QueuedConnection);

    (manager.*signal)(arguments...);

    ASSERT_EQ(spy.count(), 1) << name;
    ASSERT_EQ(spy[0].size(), static_cast<int>(sizeof...(Args))) << name;
    for (const auto& argument : spy[0]) {
        EXPECT_TRUE(argument.isValid()) << name;
    }
    EXPECT_TRUE((TupleOf<Tuple>(spy[0], std::index_sequence_for<Args...>()) == expected)) << name;
    EXPECT_TRUE(queued.empty()) << name;
    QCoreApplication::processEvents();
    EXPECT_EQ(queued, std::vector<Tuple>{expected}) << name;
}

std::vector<std::string> SignalsOf(const QMetaObject& meta)
{
    std::vector<std::string> signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        EXPECT_EQ(meta.method(i).methodType(), QMetaMethod::Signal);
        signatures.push_back(meta.method(i).methodSignature().toStdString());
    }
    return signatures;
}

TEST(SignalSetTest, FileManagerHasItsSignals)
{
    EXPECT_STREQ(AbstractFileManager::staticMetaObject.className(), "Norlis::PDF::AbstractFileManager");
    EXPECT_THAT(SignalsOf(AbstractFileManager::staticMetaObject),
                ElementsAre("FileAdded()", "FileAdded(std::shared_ptr<FileInfo>)", "FileRemoved()",
                            "FileRemoved(std::shared_ptr<const FileInfo>)", "FileUpdated(int)",
                            "FileUpdated(std::string)"));
}

TEST(SignalSetTest, CloudManagerHasItsSignals)
{
    EXPECT_STREQ(AbstractCloudManager::staticMetaObject.className(), "Norlis::PDF::Cloud::AbstractCloudManager");
    // Versions of Qt differ in the blank between the brackets.
    const auto list =
        QMetaObject::normalizedSignature("RetrievingFilesListFinished(QList<std::shared_ptr<FileInfo>>)").toStdString();
    EXPECT_THAT(
        SignalsOf(AbstractCloudManager::staticMetaObject),
        ElementsAre(
            "AuthorizationRequired()", "AuthorizationCompleted()", "AuthorizationFailed()", "LoggedOut()",
            "RetrievingFilesListStarted()", list, "RetrievingFilesListErrorRequested(QString)",
            "RetrievingFilesListCanceled()", "UploadingStarted(QString)", "UploadingProgressValueChanged(QString,int)",
            "UploadingFinished(std::shared_ptr<FileInfo>)", "UploadingFileRequestError(QString,QString)",
            "UploadingCanceled(QString)", "DownloadingStarted(std::shared_ptr<FileInfo>)",
            "DownloadingProgressValueChanged(std::shared_ptr<const FileInfo>,int)",
            "DownloadingFinished(std::shared_ptr<const FileInfo>)",
            "DownloadingFileRequestError(std::shared_ptr<const FileInfo>,QString)",
            "DownloadingCanceled(std::shared_ptr<const FileInfo>)", "RemoveFileFinished(std::shared_ptr<FileInfo>)",
            "RemovingFileError(std::shared_ptr<const FileInfo>,QString)",
            "RetrieveFilePreviewStarted(std::shared_ptr<FileInfo>,FileInfo::PreviewSize)",
            "RetrieveFilePreviewFinished(std::shared_ptr<FileInfo>,FileInfo::PreviewSize)",
            "RetrieveFilePreviewError(std::shared_ptr<const FileInfo>,FileInfo::PreviewSize,QString)",
            "RetrieveFilePreviewCanceled(std::shared_ptr<const FileInfo>)", "RetrievingUserQuotaStarted()",
            "RetrievingUserQuotaFinished(int,int)", "RetrievingUserQuotaErrorRequested(QString)",
            "RetrievingUserQuotaCanceled()"));
}

TEST(SignalSetTest, EverySignalOfTheFileManagerReachesSpiesAndQueuedSlots)
{
    SilentFileManager silent;
    AbstractFileManager& manager = silent;
    using M = AbstractFileManager;
    const Record record = RecordOf("a");
    ExpectDelivered(manager, qOverload<>(&M::FileAdded));
    ExpectDelivered(manager, qOverload<const Record&>(&M::FileAdded), record);
    ExpectDelivered(manager, qOverload<>(&M::FileRemoved));
    ExpectDelivered(manager, qOverload<const ConstRecord&>(&M::FileRemoved), record);
    ExpectDelivered(manager, qOverload<int>(&M::FileUpdated), 7);
    ExpectDelivered(manager, qOverload<const std::string&>(&M::FileUpdated), std::string("ид"));
}

TEST(SignalSetTest, EverySignalOfTheCloudManagerReachesSpiesAndQueuedSlots)
{
    SilentCloudManager silent;
    AbstractCloudManager& manager = silent;
    using M = AbstractCloudManager;
    const Record record = RecordOf("a");
    const QString path = "/a.pdf";
    const QString message = "message";
    ExpectDelivered(manager, &M::AuthorizationRequired);
    ExpectDelivered(manager, &M::AuthorizationCompleted);
    ExpectDelivered(manager, &M::AuthorizationFailed);
    ExpectDelivered(manager, &M::LoggedOut);
    ExpectDelivered(manager, &M::RetrievingFilesListStarted);
    ExpectDelivered(manager, &M::RetrievingFilesListFinished, Records{record, RecordOf("b")});
    ExpectDelivered(manager, &M::RetrievingFilesListErrorRequested, message);
    ExpectDelivered(manager, &M::RetrievingFilesListCanceled);
    ExpectDelivered(manager, &M::UploadingStarted, path);
    ExpectDelivered(manager, &M::UploadingProgressValueChanged, path, 50);
    ExpectDelivered(manager, &M::UploadingFinished, record);
    ExpectDelivered(manager, &M::UploadingFileRequestError, path, message);
    ExpectDelivered(manager, &M::UploadingCanceled, path);
    ExpectDelivered(manager, &M::DownloadingStarted, record);
    ExpectDelivered(manager, &M::DownloadingProgressValueChanged, record, 50);
    ExpectDelivered(manager, &M::DownloadingFinished, record);
    ExpectDelivered(manager, &M::DownloadingFileRequestError, record, message);
    ExpectDelivered(manager, &M::DownloadingCanceled, record);
    ExpectDelivered(manager, &M::RemoveFileFinished, record);
    ExpectDelivered(manager, &M::RemovingFileError, record, message);
    ExpectDelivered(manager, &M::RetrieveFilePreviewStarted, record, PreviewSize::Large);
    ExpectDelivered(manager, &M::RetrieveFilePreviewFinished, record, PreviewSize::Large);
    ExpectDelivered(manager, &M::RetrieveFilePreviewError, record, PreviewSize::Large, message);
    ExpectDelivered(manager, &M::RetrieveFilePreviewCanceled, record);
    ExpectDelivered(manager, &M::RetrievingUserQuotaStarted);
    ExpectDelivered(manager, &M::RetrievingUserQuotaFinished, 1, -2);
    ExpectDelivered(manager, &M::RetrievingUserQuotaErrorRequested, message);
    ExpectDelivered(manager, &M::RetrievingUserQuotaCanceled);
}

TEST(SignalSetTest, EveryParameterTypeIsRegisteredUnderTheNameThatItsSignalUses)
{
    const SilentFileManager files;
    const SilentCloudManager cloud;
    for (const QObject* manager : {static_cast<const QObject*>(&files), static_cast<const QObject*>(&cloud)}) {
        for (int i = 0; i < manager->metaObject()->methodCount(); ++i) {
            const auto method = manager->metaObject()->method(i);
            for (int argument = 0; argument < method.parameterCount(); ++argument) {
                EXPECT_NE(method.parameterType(argument), QMetaType::UnknownType)
                    << method.methodSignature().toStdString();
            }
        }
    }
}

} // namespace

} // namespace Norlis::Test

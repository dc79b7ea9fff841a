// The file list and the cloud manager with 10,000 documents, each beside the least that could be done: the same records
// read directly, a plain walk over the same ids, the same records built without a manager. `ratio` is the managers'
// time by that. What the library does in one slice of the event loop is measured with up to 100,000 of them.

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPixmap>

#include <benchmark/benchmark.h>

#include <chrono>
#include <vector>

namespace {

using namespace Norlis;
using PDF::FileInfo;
using PDF::Cloud::ICloudProtocol;
using PDF::Cloud::NorlisCloudFilesManager;
using PDF::Cloud::NorlisCloudManager;

constexpr int documentCount = 10'000;

class EmptyStore : public PDF::Cloud::ICloudInfoStorage {
public:
    void RemoveRecord(const std::string&) override {}
    void SetValue(const std::string&, const std::string&, const std::string&) override {}
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override
    {
        return {};
    }
};

class PlainFileSystem : public PDF::IFileSystem {
public:
    bool Exists(const ioPath&) override
    {
        return false;
    }
    ioPath NormalizePath(const ioPath& path) override
    {
        return path;
    }
};

class NoHash : public PDF::IHashCalculator {
public:
    std::string CalculateHash(const ioPath&) override
    {
        return {};
    }
};

class NoRefresh : public PDF::Settings::ICloudAccountSettings {
public:
    bool IsAutoRefreshEnabled() override
    {
        return false;
    }
    int GetAutoRefreshInterval() override
    {
        return 0;
    }
};

/// Accepts everything and keeps the callbacks, as a real protocol does while requests run.
class AcceptingProtocol : public ICloudProtocol {
public:
    qint64 auth(const QMap<QString, QString>&, std::function<void(qint64, Social::RequestResult)>&&) override
    {
        return ++lastId;
    }
    void logout() override {}
    bool loggedIn() override
    {
        return true;
    }
    qint64 userName(std::function<void(qint64, Social::RequestResult, QString)>&&) override
    {
        return ++lastId;
    }
    qint64 userProfile(std::function<void(qint64, Social::RequestResult, QUrl)>&&) override
    {
        return ++lastId;
    }
    qint64 userPic(std::function<void(qint64, Social::RequestResult, QString)>&&) override
    {
        return ++lastId;
    }
    qint64 userPic(std::function<void(qint64, Social::RequestResult, QPixmap)>&&) override
    {
        return ++lastId;
    }
    qint64 retriveFileInfo(const FileFieldData&,
                           std::function<void(qint64, Social::RequestResult, FileInfo)>&&) override
    {
        return ++lastId;
    }
    qint64 retriveFileList(const FileFieldData&,
                           std::function<void(qint64, Social::RequestResult, QList<FileInfo>)>&& done) override
    {
        listDone = std::move(done);
        return ++lastId;
    }
    qint64 downloadFile(const FileFieldData&, std::function<void(qint64, Social::RequestResult)>&&,
                        ProgressCallback&&) override
    {
        return ++lastId;
    }
    qint64 deleteFile(const FileFieldData&, std::function<void(qint64, Social::RequestResult)>&&) override
    {
        return ++lastId;
    }
    qint64 uploadFile(const QString&, const QMap<QString, QString>&,
                      std::function<void(qint64, Social::RequestResult, const Social::NorlisCloudSharingResult&)>&&,
                      ProgressCallback&&) override
    {
        return ++lastId;
    }
    qint64 userQuota(std::function<void(qint64, Social::RequestResult, const QMap<QString, QuotaValue>&)>&&) override
    {
        return ++lastId;
    }
    qint64 retrievePreview(const QMap<QString, QString>&,
                           std::function<void(qint64, Social::RequestResult, QPixmap)>&& done) override
    {
        previewsDone.push_back(std::move(done));
        return ++lastId;
    }
    void cancelOperation(qint64) override
    {
        ++canceled;
    }

    qint64 lastId = 0;
    int canceled = 0;
    std::function<void(qint64, Social::RequestResult, QList<FileInfo>)> listDone;
    std::vector<std::function<void(qint64, Social::RequestResult, QPixmap)>> previewsDone;
};

std::string IdOf(int number)
{
    return "id" + std::to_string(1'000'000 + number);
}

std::shared_ptr<FileInfo> RecordOf(int number)
{
    return std::make_shared<FileInfo>(
        FileInfo::CloudInfo(IdOf(number), "document " + std::to_string(number) + ".pdf", 12'345, true, QUrl(),
                            QDateTime(QDate(2024, 5, 6), QTime(7, 8), Qt::UTC),
                            QDateTime(QDate(2024, 6, 7), QTime(8, 9), Qt::UTC), 1, "0123456789abcdef0123456789abcdef"));
}

std::unique_ptr<NorlisCloudFilesManager> FullList()
{
    auto list = std::make_unique<NorlisCloudFilesManager>(
        std::make_shared<EmptyStore>(), std::make_shared<PlainFileSystem>(), std::make_shared<NoHash>());
    for (int number = 0; number < documentCount; ++number) {
        list->Add(RecordOf(number));
    }
    return list;
}

/// Runs both in turn for as long as the benchmark asks and reports the time of the first, and its ratio to the second.
template <typename Measured, typename Least>
void Compare(benchmark::State& state, Measured measured, Least least)
{
    using Clock = std::chrono::steady_clock;
    std::chrono::duration<double> measuredTime{0};
    std::chrono::duration<double> leastTime{0};
    for (auto _ : state) {
        const auto begin = Clock::now();
        measured();
        const auto middle = Clock::now();
        least();
        measuredTime += middle - begin;
        leastTime += Clock::now() - middle;
        state.SetIterationTime(std::chrono::duration<double>(middle - begin).count());
    }
    state.counters["ratio"] = measuredTime / leastTime;
}

void GettersOfAllDocuments(benchmark::State& state)
{
    const auto list = FullList();
    std::vector<std::shared_ptr<FileInfo>> records;
    records.reserve(documentCount);
    for (int number = 0; number < documentCount; ++number) {
        records.push_back(RecordOf(number));
    }
    Compare(
        state,
        [&] {
            for (int index = 0; index < documentCount; ++index) {
                benchmark::DoNotOptimize(list->GetDocumentName(index));
                benchmark::DoNotOptimize(list->GetDocumentId(index));
                benchmark::DoNotOptimize(list->GetFileSize(index));
                benchmark::DoNotOptimize(list->GetDocumentState(index));
                benchmark::DoNotOptimize(list->GetModifiedDateTime(index));
            }
        },
        [&] {
            for (const auto& record : records) {
                auto& cloudInfo = *record->GetRedactableCloudInfo();
                benchmark::DoNotOptimize(QString::fromStdString(cloudInfo.GetFileName()));
                benchmark::DoNotOptimize(QString::fromStdString(record->GetId()));
                benchmark::DoNotOptimize(cloudInfo.GetSize());
                benchmark::DoNotOptimize(record->GetCloudStatus());
                benchmark::DoNotOptimize(cloudInfo.GetModifyTime());
            }
        });
}

void WalkFor(const std::vector<std::string>& ids, const std::string& id)
{
    benchmark::DoNotOptimize(std::find(ids.begin(), ids.end(), id));
}

std::vector<std::string> IdsInListOrder()
{
    std::vector<std::string> ids;
    for (int number = documentCount - 1; number >= 0; --number) {
        ids.push_back(IdOf(number));
    }
    return ids;
}

void GetFileInfoOfLast(benchmark::State& state)
{
    const auto list = FullList();
    const auto ids = IdsInListOrder();
    const auto id = QString::fromStdString(IdOf(0));
    Compare(
        state, [&] { benchmark::DoNotOptimize(list->GetFileInfo(id)); }, [&] { WalkFor(ids, IdOf(0)); });
}

void UpdateOfLast(benchmark::State& state)
{
    const auto list = FullList();
    const auto ids = IdsInListOrder();
    const std::shared_ptr<const FileInfo> incoming = RecordOf(0);
    Compare(
        state, [&] { list->Update(incoming); }, [&] { WalkFor(ids, IdOf(0)); });
}

QList<ICloudProtocol::FileInfo> CloudList(int count = documentCount)
{
    QList<ICloudProtocol::FileInfo> files;
    for (int number = 0; number < count; ++number) {
        ICloudProtocol::FileInfo file;
        file.id = QString::fromStdString(IdOf(number));
        file.name = QStringLiteral("document %1.pdf").arg(number);
        file.size = 12'345;
        file.md5Hash = "0123456789abcdef0123456789abcdef";
        file.createdAt = "2024-05-06T07:08:00Z";
        file.modifiedAt = "2024-06-07T08:09:00Z";
        files.append(file);
    }
    return files;
}

struct Cloud {
    std::shared_ptr<AcceptingProtocol> protocol = std::make_shared<AcceptingProtocol>();
    std::unique_ptr<NorlisCloudManager> manager = std::make_unique<NorlisCloudManager>(
        protocol, std::make_shared<NoHash>(), std::make_shared<PlainFileSystem>(), std::make_shared<NoRefresh>());
};

/// One answer of 10,000 documents, upon which the manager makes 30,000 preview requests, in one slice of the event
/// loop.
void FilesListAnswer(benchmark::State& state)
{
    const auto files = CloudList();
    std::size_t requests = 0;
    Compare(
        state,
        [&] {
            Cloud cloud;
            cloud.manager->RetrieveFilesList();
            cloud.protocol->listDone(cloud.protocol->lastId, Social::Success, files);
            requests = cloud.protocol->previewsDone.size();
        },
        [&] {
            for (int number = 0; number < documentCount; ++number) {
                const auto record = RecordOf(number);
                benchmark::DoNotOptimize(QDateTime::fromString(files[number].createdAt, Qt::ISODate));
                benchmark::DoNotOptimize(QDateTime::fromString(files[number].modifiedAt, Qt::ISODate));
            }
        });
    state.counters["preview_requests"] = static_cast<double>(requests);
}

/// A manager of a host that fetches pictures when they are looked at.
class PicturesOnDemand : public NorlisCloudManager {
public:
    using NorlisCloudManager::NorlisCloudManager;

    void RetrieveFilePreview(const std::shared_ptr<FileInfo>&, FileInfo::PreviewSize, const QSize&) override {}
};

/// What is left of that slice then: one record made for each document.
void FilesListConversion(benchmark::State& state)
{
    const auto files = CloudList(static_cast<int>(state.range(0)));
    const auto protocol = std::make_shared<AcceptingProtocol>();
    PicturesOnDemand manager(protocol, std::make_shared<NoHash>(), std::make_shared<PlainFileSystem>(),
                             std::make_shared<NoRefresh>());
    for ([[maybe_unused]] auto _ : state) {
        manager.RetrieveFilesList();
        protocol->listDone(protocol->lastId, Social::Success, files);
    }
    state.SetComplexityN(state.range(0));
}

/// Destroying the manager while those 30,000 requests wait.
void DestructionWithRequests(benchmark::State& state)
{
    const auto files = CloudList();
    for (auto _ : state) {
        Cloud cloud;
        cloud.manager->RetrieveFilesList();
        cloud.protocol->listDone(cloud.protocol->lastId, Social::Success, files);
        const auto begin = std::chrono::steady_clock::now();
        cloud.manager.reset();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
}

BENCHMARK(GettersOfAllDocuments)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(GetFileInfoOfLast)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(UpdateOfLast)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(FilesListAnswer)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FilesListConversion)->RangeMultiplier(10)->Range(1'000, 100'000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(DestructionWithRequests)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

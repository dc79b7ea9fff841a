// The record store, alone and under the file list, beside a bare SQLite loop that reads or writes the same rows in the
// same run. `ratio` is the time by that of the loop, so 1 is as fast as SQLite itself.

#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <host/store/SqliteCloudInfoStorage.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <stdexcept>

namespace {

using namespace Norlis;
using Host::SqliteCloudInfoStorage;
using PDF::FileInfo;
using PDF::Cloud::NorlisCloudFilesManager;
using Records = std::map<std::string, std::map<std::string, std::string>>;

/// What a careful programmer would write by hand: prepared statements, one transaction, the same durability.
class BareSqlite {
public:
    explicit BareSqlite(const QString& file)
    {
        Check(sqlite3_open(file.toUtf8().constData(), &handle));
        Check(sqlite3_exec(handle,
                           "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
                           "CREATE TABLE IF NOT EXISTS records (file_id BLOB NOT NULL PRIMARY KEY, fields BLOB NOT "
                           "NULL) WITHOUT ROWID",
                           nullptr, nullptr, nullptr));
    }

    ~BareSqlite()
    {
        sqlite3_close(handle);
    }

    BareSqlite(const BareSqlite&) = delete;
    BareSqlite& operator=(const BareSqlite&) = delete;

    void Write(const Records& records)
    {
        sqlite3_exec(handle, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        Check(sqlite3_prepare_v2(handle, "INSERT OR REPLACE INTO records VALUES (?, ?)", -1, &insert, nullptr));
        for (const auto& [id, fields] : records) {
            std::string all;
            for (const auto& [key, value] : fields) {
                all.append(key).append(1, '\n').append(value).append(1, '\n');
            }
            sqlite3_bind_blob(insert, 1, id.data(), static_cast<int>(id.size()), SQLITE_STATIC);
            sqlite3_bind_blob(insert, 2, all.data(), static_cast<int>(all.size()), SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        Check(sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr));
    }

    /// The bytes of all rows.
    std::size_t Read()
    {
        std::size_t bytes = 0;
        sqlite3_stmt* select = nullptr;
        Check(sqlite3_prepare_v2(handle, "SELECT file_id, fields FROM records ORDER BY file_id", -1, &select, nullptr));
        while (sqlite3_step(select) == SQLITE_ROW) {
            for (int column = 0; column < 2; ++column) {
                const std::string text(static_cast<const char*>(sqlite3_column_blob(select, column)),
                                       static_cast<std::size_t>(sqlite3_column_bytes(select, column)));
                benchmark::DoNotOptimize(text.data());
                bytes += text.size();
            }
        }
        sqlite3_finalize(select);
        return bytes;
    }

private:
    static void Check(int code)
    {
        if (code != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errstr(code));
        }
    }

    sqlite3* handle = nullptr;
};

/// A list of documents; every `localShare`th has a local copy, none when it is 0.
class Documents {
public:
    explicit Documents(const benchmark::State& state)
        : count(static_cast<int>(state.range(0))),
          localShare(static_cast<int>(state.range(1)))
    {
        for (int number = 0; localShare != 0 && number < count; number += localShare) {
            QFile file(LocalPath(number));
            if (!file.open(QFile::WriteOnly) || file.write("%PDF-1.7 " + QByteArray::number(number)) < 0) {
                throw std::runtime_error(file.errorString().toStdString());
            }
        }
    }

    QString NewFile()
    {
        return folder.filePath(QString("store %1.sqlite").arg(++fileCount));
    }

    /// A list over a store, with the editor's other services.
    std::unique_ptr<NorlisCloudFilesManager> List(const std::shared_ptr<SqliteCloudInfoStorage>& storage) const
    {
        return std::make_unique<NorlisCloudFilesManager>(storage, std::make_shared<Host::LocalFileSystem>(),
                                                         hashCalculator);
    }

    /// Adds all documents to a list that is empty, as a first refresh does.
    void Fill(NorlisCloudFilesManager& list) const
    {
        const QDateTime time(QDate(2026, 5, 6), QTime(7, 8), Qt::UTC);
        for (int number = 0; number < count; ++number) {
            const QByteArray id = QByteArray::number(1'000'000 + number * 7919LL % count) + "-4f1c-9d2e-8a7b6c5d4e3f";
            const auto file = std::make_shared<FileInfo>(
                FileInfo::CloudInfo(id.toStdString(), "Report " + std::to_string(number) + ".pdf", 123'456, true,
                                    QUrl("https://cloud.example/dav/Report%20" + QString::number(number) + ".pdf"),
                                    time, time, 3600, "0123456789abcdef0123456789abcdef"));
            const ioPath picture("/home/user/.cache/previews/" + id.toStdString() + ".png");
            for (const auto size : {FileInfo::PreviewSize::Small, FileInfo::PreviewSize::Medium}) {
                file->GetRedactableCloudInfo()->SetPreviewPathBySize(picture, size);
            }
            if (localShare != 0 && number % localShare == 0) {
                file->SetPath(ioPath(LocalPath(number).toStdString()), "0123456789abcdef0123456789abcdef", "0");
            }
            list.Add(file);
        }
    }

    /// A closed store that the list has saved.
    QString SavedFile()
    {
        const QString file = NewFile();
        Fill(*List(std::make_shared<SqliteCloudInfoStorage>(file)));
        return file;
    }

private:
    QString LocalPath(int number) const
    {
        return folder.filePath(QString("Report %1.pdf").arg(number));
    }

    const int count;
    const int localShare;
    const QTemporaryDir folder;
    int fileCount = 0;
    const std::shared_ptr<Host::Md5HashCalculator> hashCalculator =
        std::make_shared<Host::Md5HashCalculator>(folder.filePath("hashes.sqlite"));
};

/// Adds up the times of both sides of one benchmark.
class Comparison {
public:
    explicit Comparison(benchmark::State& state) : state(state) {}

    ~Comparison()
    {
        state.counters["ratio"] = measured / bare;
    }

    template <typename Measured, typename Bare>
    void Round(const Measured& runMeasured, const Bare& runBare)
    {
        const auto seconds = Time(runMeasured);
        measured += seconds;
        bare += Time(runBare);
        state.SetIterationTime(seconds);
    }

private:
    template <typename Work>
    static double Time(const Work& work)
    {
        const auto begin = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    benchmark::State& state;
    double measured = 0;
    double bare = 0;
};

void StoreReadsAll(benchmark::State& state)
{
    Documents documents(state);
    SqliteCloudInfoStorage storage(documents.SavedFile());
    BareSqlite bare(documents.NewFile());
    bare.Write(storage.ReadAll());
    Comparison comparison(state);
    for (auto _ : state) {
        Records records; // freed outside the measured time
        comparison.Round([&] { records = storage.ReadAll(); }, [&] { bare.Read(); });
    }
}

void ListLoads(benchmark::State& state)
{
    Documents documents(state);
    const auto storage = std::make_shared<SqliteCloudInfoStorage>(documents.SavedFile());
    BareSqlite bare(documents.NewFile());
    bare.Write(storage->ReadAll());
    Comparison comparison(state);
    for (auto _ : state) {
        std::unique_ptr<NorlisCloudFilesManager> list;
        comparison.Round([&] { list = documents.List(storage); }, [&] { bare.Read(); });
    }
}

void StoreWritesAll(benchmark::State& state)
{
    Documents documents(state);
    const Records records = SqliteCloudInfoStorage(documents.SavedFile()).ReadAll();
    Comparison comparison(state);
    for (auto _ : state) {
        SqliteCloudInfoStorage storage(documents.NewFile());
        BareSqlite bare(documents.NewFile());
        comparison.Round(
            [&] {
                for (const auto& [id, fields] : records) {
                    for (const auto& [key, value] : fields) {
                        storage.SetValue(id, key, value);
                    }
                }
                storage.Commit();
            },
            [&] { bare.Write(records); });
    }
}

void ListSavesNewRecords(benchmark::State& state)
{
    Documents documents(state);
    const Records records = SqliteCloudInfoStorage(documents.SavedFile()).ReadAll();
    Comparison comparison(state);
    for (auto _ : state) {
        const auto storage = std::make_shared<SqliteCloudInfoStorage>(documents.NewFile());
        auto list = documents.List(storage);
        documents.Fill(*list);
        BareSqlite bare(documents.NewFile());
        comparison.Round(
            [&] {
                list.reset();
                storage->Commit();
            },
            [&] { bare.Write(records); });
    }
}

void ListSavesWithoutChanges(benchmark::State& state)
{
    Documents documents(state);
    const auto storage = std::make_shared<SqliteCloudInfoStorage>(documents.SavedFile());
    auto list = documents.List(storage);
    list.reset(); // some fields come back changed from the first load
    storage->Commit();
    const Records records = storage->ReadAll();
    BareSqlite bare(documents.NewFile());
    bare.Write(records);
    Comparison comparison(state);
    for (auto _ : state) {
        list = documents.List(storage);
        comparison.Round(
            [&] {
                list.reset();
                storage->Commit();
            },
            [&] { bare.Write(records); });
    }
}

void Sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"documents", "localShare"})
        ->ArgsProduct({{1'000, 10'000, 100'000}, {0, 10}})
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

BENCHMARK(StoreReadsAll)->Apply(Sizes);
BENCHMARK(ListLoads)->Apply(Sizes);
BENCHMARK(StoreWritesAll)->Apply(Sizes);
BENCHMARK(ListSavesNewRecords)->Apply(Sizes);
BENCHMARK(ListSavesWithoutChanges)->Apply(Sizes);

} // namespace

BENCHMARK_MAIN();

// The view of the documents with 10,000 of them: how long the event loop is busy at most while somebody scrolls,
// searches and sorts. `frames` is that time by a frame of 16 ms; `ratio` and `whole_ratio` are that time and the whole
// time by those of Qt's own list view, which shows the names and the same pictures, held ready in memory.

#include <apps/window/list/DocumentsFilter.h>
#include <apps/window/list/DocumentsView.h>
#include <host/CloudDocumentsModel.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QIdentityProxyModel>
#include <QImage>
#include <QPixmap>
#include <QScrollBar>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace Norlis;
using PDF::FileInfo;

constexpr int documentCount = 10'000;
constexpr int pictureCount = 2'000; // files; more documents share them
constexpr int edge = 144;           // of a picture in the view, in pixels
constexpr qint64 frame = 16;        // milliseconds

/// Has the pictures of the documents ready for a view that knows nothing of them.
class WithPictures : public QIdentityProxyModel {
public:
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DecorationRole) {
            return QIdentityProxyModel::data(index, role);
        }
        return pictures.value(index.data(Host::CloudDocumentsModel::IdRole).toString());
    }

    QHash<QString, QPixmap> pictures; ///< by id
};

/// Documents with pictures, and the widgets over them.
class Desk {
public:
    Desk()
    {
        QImage picture(135, 191, QImage::Format_RGB32);
        std::vector<QPixmap> pictures;
        for (int number = 0; number < pictureCount; ++number) {
            picture.fill(QColor::fromHsv(number % 360, 100, 230));
            picture.save(PicturePath(number), "PNG");
            pictures.push_back(
                QPixmap::fromImage(picture.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
        }
        for (int number = 0; number < documentCount; ++number) {
            Add(number);
            ready.pictures.insert("id" + QString::number(number), pictures[number % pictureCount]);
        }
        filter.setSourceModel(&model);
        view.setModel(&filter);
        ready.setSourceModel(&filter);
        plain.setModel(&ready);
        plain.setUniformItemSizes(true);
        plain.setVerticalScrollMode(QListView::ScrollPerPixel);
        plain.setResizeMode(QListView::Adjust);
    }

    void Arrange(Window::DisplayMode mode, const QSize& size)
    {
        const bool isList = mode == Window::DisplayMode::List;
        view.SetMode(mode);
        view.resize(size);
        plain.setViewMode(isList ? QListView::ListMode : QListView::IconMode);
        plain.setMovement(QListView::Static);
        plain.setIconSize(isList ? QSize(32, 32) : QSize(edge, edge));
        plain.resize(size);
        view.show(); // which settles the size of its cells
        plain.setGridSize(view.gridSize());
        view.hide();
    }

    void Add(int number)
    {
        const auto id = "id" + std::to_string(number);
        const auto name = "Document " + std::to_string(number * 7919 % documentCount) + ".pdf";
        const auto date = QDateTime({2026, 1, 1}, {0, 0}, Qt::UTC).addSecs(number * 104'729 % 10'000'000);
        FileInfo::CloudInfo cloudInfo(id, name, 1'000 + number, false, {}, date, date, 0, "hash");
        for (const auto size :
             {FileInfo::PreviewSize::Small, FileInfo::PreviewSize::Medium, FileInfo::PreviewSize::Large}) {
            cloudInfo.SetPreviewPathBySize(ioPath(PicturePath(number % pictureCount).toStdString()), size);
        }
        list.Add(std::make_shared<FileInfo>(cloudInfo));
    }

    QTemporaryDir folder;
    PDF::Cloud::NorlisCloudFilesManager list{std::make_shared<TestKit::RecordingStore>(),
                                             std::make_shared<TestKit::FakeFileSystem>(),
                                             std::make_shared<TestKit::CountingHashCalculator>()};
    Host::CloudDocumentsModel model{list};
    Window::DocumentsFilter filter;
    WithPictures ready;
    Window::DocumentsView view;
    QListView plain;

private:
    QString PicturePath(int number) const
    {
        return folder.filePath(QString::number(number) + ".png");
    }
};

Desk& TheDesk()
{
    static Desk desk;
    return desk;
}

/// Does something and all that follows from it, as one slice of the event loop.
template <typename Action>
double Slice(Action action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    QCoreApplication::processEvents();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

struct Scrolled {
    double longest = 0;
    double whole = 0;
};

Scrolled ScrollThrough(QAbstractItemView& view)
{
    constexpr int steps = 400;
    Scrolled result;
    view.show();
    QCoreApplication::processEvents();
    QScrollBar& bar = *view.verticalScrollBar();
    for (int step = 0; step <= steps; ++step) {
        const double slice = Slice([&] { bar.setValue(bar.maximum() * step / steps); });
        result.longest = std::max(result.longest, slice);
        result.whole += slice;
    }
    view.hide();
    return result;
}

void Report(benchmark::State& state, double longest)
{
    state.counters["longest_ms"] = longest;
    state.counters["frames"] = longest / frame;
}

void Scrolls(benchmark::State& state, Window::DisplayMode mode, const QSize& size)
{
    Desk& desk = TheDesk();
    desk.Arrange(mode, size);
    Scrolled ours;
    Scrolled qts;
    for ([[maybe_unused]] auto _ : state) {
        ours = ScrollThrough(desk.view);
        qts = ScrollThrough(desk.plain);
    }
    Report(state, ours.longest);
    state.counters["ratio"] = ours.longest / qts.longest;
    state.counters["whole_ratio"] = ours.whole / qts.whole;
}

void Search(benchmark::State& state)
{
    Desk& desk = TheDesk();
    desk.view.show();
    double longest = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const auto text : {"d", "do", "doc 1", "doc 12", "doc 123", ""}) {
            longest = std::max(longest, Slice([&] { desk.filter.Search(text); }));
        }
    }
    desk.view.hide();
    Report(state, longest);
}

void Sort(benchmark::State& state)
{
    using Window::Column;
    Desk& desk = TheDesk();
    desk.view.show();
    double longest = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const auto column : {Column::Modified, Column::Size, Column::State, Column::Folder, Column::Name}) {
            longest = std::max(longest, Slice([&] { desk.filter.SortBy(column, Qt::DescendingOrder); }));
            longest = std::max(longest, Slice([&] { desk.filter.SortBy(column, Qt::AscendingOrder); }));
        }
    }
    desk.view.hide();
    Report(state, longest);
}

void OneMoreDocument(benchmark::State& state)
{
    Desk& desk = TheDesk();
    desk.view.show();
    double longest = 0;
    int number = documentCount;
    for ([[maybe_unused]] auto _ : state) {
        longest = std::max(longest, Slice([&] { desk.Add(number++); }));
    }
    desk.view.hide();
    Report(state, longest);
}

const QSize laptop(1366, 768);
const QSize desktop(3840, 2160);
BENCHMARK_CAPTURE(Scrolls, thumbnails on a laptop, Window::DisplayMode::Thumbnails, laptop)
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scrolls, list on a laptop, Window::DisplayMode::List, laptop)
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scrolls, thumbnails at 3840x2160, Window::DisplayMode::Thumbnails, desktop)
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Search)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(Sort)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(OneMoreDocument)->Iterations(50)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

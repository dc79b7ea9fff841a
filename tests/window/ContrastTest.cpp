#include "Palettes.h"
#include "WindowTest.h"

#include <apps/window/widgets/Contrast.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTest>

#include <array>

namespace Norlis::Test {

namespace {

using Window::Contrast;

/// What is seen of documents in a palette, by its colours on the screen.
class ContrastTest : public WindowTest, public testing::WithParamInterface<int> {
protected:
    ContrastTest()
    {
        const std::array<QPalette, 3> palettes = {palette, Dark(), HighContrast()};
        QApplication::setPalette(palettes.at(static_cast<std::size_t>(GetParam())));
        QFont large = font;
        large.setPointSizeF(font.pointSizeF() * 2); // its lines have pixels that are covered whole
        QApplication::setFont(large);
    }

    ~ContrastTest() override
    {
        window.reset();
        QApplication::setPalette(palette);
        QApplication::setFont(font);
    }

    /// Of what differs most from the ground that it is painted on.
    static qreal Strongest(const QImage& picture, const QColor& ground)
    {
        qreal best = 1;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                best = qMax(best, Contrast(picture.pixelColor(x, y), ground));
            }
        }
        return best;
    }

    QRect Cell(int row) const
    {
        return Documents()->visualRect(Documents()->model()->index(row, 0));
    }

    const QPalette palette = QApplication::palette();
    const QFont font = QApplication::font();
};

TEST_P(ContrastTest, NamesDatesAndTheFocusAreSeenOnWhatIsSelectedAndElse)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    window->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return window->isActiveWindow(); }));
    QTest::keyClick(Find<QLineEdit>("search"), Qt::Key_Tab); // from then on the focus is shown
    Documents()->setFocus();
    Select({"a.pdf"});
    constexpr int inset = 6; // from where the ring is
    const auto groundOf = [](const QImage& cell) { return cell.pixelColor(cell.width() / 2, inset); };
    const auto picture = [this](int row) { return Documents()->viewport()->grab(Cell(row)).toImage(); };
    const QColor paper = Documents()->palette().color(QPalette::Base);
    EXPECT_TRUE(WaitUntil([&] { return groundOf(picture(0)) != paper; })) << "what is selected";
    const QImage selected = picture(0);
    const auto edge = [&](int from) { return selected.copy(selected.width() / 4, from, selected.width() / 2, 2); };
    EXPECT_GE(Strongest(edge(2), paper), 3) << "the rim of what is selected";
    EXPECT_GE(Strongest(edge(4), groundOf(selected)), 3) << "the focus";
    for (const int row : {0, 1}) {
        const QImage cell = picture(row);
        const int line = Documents()->fontMetrics().lineSpacing();
        const QRect name(inset, cell.height() - 3 * line - inset, cell.width() - 2 * inset, line);
        EXPECT_GE(Strongest(cell.copy(name), groundOf(cell)), 4.5) << row;
        EXPECT_GE(Strongest(cell.copy(name.translated(0, line)), groundOf(cell)), 4.5) << "the date of " << row;
    }
}

TEST_P(ContrastTest, TheChipsAreSeen)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    for (const char* const name : {"All 1", "Conflicts"}) {
        ASSERT_TRUE(WaitUntil([&] { return Button(name) != nullptr; })) << name;
        const auto chip = Button(name);
        const QImage picture = chip->grab().toImage();
        const QPoint middle = picture.rect().center();
        const QColor ground = picture.pixelColor(middle.x(), 4);
        const int side = picture.height() / 2; // which is round
        const QRect line(side, 6, picture.width() - 2 * side, picture.height() - 12);
        EXPECT_GE(Strongest(picture.copy(line), ground), 4.5) << name;
        const QColor around = chip->palette().color(QPalette::Window);
        EXPECT_GE(Strongest(picture.copy(middle.x(), 0, 1, 2), around), 3) << name;
    }
}

TEST_P(ContrastTest, TheLineAtTheBottomIsTintedWhileOfflineAndCanBeRead)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const QColor paper = window->palette().color(QPalette::Window);
    const auto line = Find<QLabel>("status")->parentWidget();
    const auto ground = [line] { return line->grab().toImage().pixelColor(1, 1); };
    EXPECT_TRUE(WaitUntil([&] { return ground() == paper; }));
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Status().contains("Offline"); }));
    EXPECT_NE(ground(), paper);
    EXPECT_GE(Strongest(line->grab(Find<QLabel>("status")->geometry()).toImage(), ground()), 4.5);
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    ClickButton("Try Now");
    EXPECT_TRUE(WaitUntil([&] { return ground() == paper; }));
}

TEST_P(ContrastTest, AMessageOfAConflictIsAmberAndNewsAreBlueAndBothCanBeRead)
{
    OpenWithLocalCopy();
    const auto ground = [this] {
        const auto bar = Find<QWidget>("message");
        return bar ? bar->grab().toImage().pixelColor(4, 4) : QColor();
    };
    const auto isRead = [&] { return Strongest(Find<QLabel>("messageText")->grab().toImage(), ground()) >= 4.5; };
    WriteFile(Local("downloads/a.pdf"), PdfOfText("ours"));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; }));
    EXPECT_GT(ground().blue(), ground().red());
    EXPECT_TRUE(isRead());
    PutIntoCloud("a.pdf", PdfOfText("theirs"));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed both here and in the cloud."; }));
    EXPECT_GT(ground().red(), ground().blue());
    EXPECT_TRUE(isRead());
}

INSTANTIATE_TEST_SUITE_P(LightDarkAndHigh, ContrastTest, testing::Values(0, 1, 2));

} // namespace

} // namespace Norlis::Test

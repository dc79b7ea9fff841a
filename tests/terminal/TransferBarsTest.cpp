#include <apps/terminal/Text.h>
#include <apps/terminal/TransferBars.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using Terminal::TransferBars;

constexpr int columns = 60;
constexpr int rows = 24;

TEST(TransferBarsTest, EachTransferHasALine)
{
    TransferBars bars("Uploading");
    bars.Add("a", "first.pdf");
    bars.Add("b", "second.pdf");
    bars.SetProgress("b", 50);
    const QStringList lines = bars.Lines(columns, rows);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith("first.pdf ") && lines[0].endsWith("]   0%")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("]  50%")) << lines[1].toStdString();
    EXPECT_NEAR(lines[1].count('#'), lines[1].count('.') - 1, 1) << "the name has a period too";
}

TEST(TransferBarsTest, EndedTransferHasNoLine)
{
    TransferBars bars("Uploading");
    bars.Add("a", "first.pdf");
    bars.Add("b", "second.pdf");
    bars.Remove("a");
    ASSERT_EQ(bars.Lines(columns, rows).size(), 1);
    EXPECT_TRUE(bars.Lines(columns, rows)[0].startsWith("second.pdf"));
    bars.Remove("b");
    EXPECT_EQ(bars.Lines(columns, rows), QStringList());
}

TEST(TransferBarsTest, ManyTransfersShareOneLine)
{
    TransferBars bars("Uploading");
    for (int number = 0; number < 20; ++number) {
        bars.Add(QString::number(number), "report.pdf");
        bars.SetProgress(QString::number(number), 50);
    }
    for (int number = 0; number < 10; ++number) {
        bars.Remove(QString::number(number));
    }
    const QStringList lines = bars.Lines(columns, rows);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith("Uploading, 10 of 20 done ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].endsWith("]  75%")) << lines[0].toStdString();
}

TEST(TransferBarsTest, AWideWindowShowsSpeedAndTimeLeft)
{
    TransferBars bars("Uploading");
    bars.Add("a", "first.pdf", 100 * 1024 * 1024);
    bars.SetProgress("a", 0, 0);
    bars.SetProgress("a", 20, 2000);
    EXPECT_TRUE(bars.Lines(columns, rows, 2000)[0].endsWith(" 20%"));
    const QString line = bars.Lines(100, rows, 2000)[0];
    EXPECT_TRUE(line.endsWith(" 20%     10 MiB/s       8 s")) << line.toStdString();
    EXPECT_LT(Terminal::DisplayWidth(line), 100);
    for (int number = 0; number < 10; ++number) {
        bars.Add(QString::number(number), "report.pdf", 10 * 1024 * 1024);
    }
    EXPECT_TRUE(bars.Lines(100, rows, 2000)[0].endsWith("10 MiB/s      18 s"))
        << bars.Lines(100, rows, 2000)[0].toStdString();
}

TEST(TransferBarsTest, LowWindowGetsOneLineOrNone)
{
    TransferBars bars("Uploading");
    bars.Add("a", "first.pdf");
    bars.Add("b", "second.pdf");
    EXPECT_EQ(bars.Lines(columns, 4).size(), 2);
    EXPECT_EQ(bars.Lines(columns, 3).size(), 1);
    EXPECT_EQ(bars.Lines(columns, 2).size(), 0);
}

TEST(TransferBarsTest, LinesAreNarrowerThanAnyWindow)
{
    TransferBars bars("Uploading");
    bars.Add("a", QStringLiteral("年報 with a long name.pdf"));
    bars.SetProgress("a", 100);
    for (int width = 0; width < 200; ++width) {
        for (const QString& line : bars.Lines(width, rows)) {
            EXPECT_LT(Terminal::DisplayWidth(line), width);
            EXPECT_TRUE(line.endsWith("100%"));
        }
    }
    EXPECT_EQ(bars.Lines(6, rows), QStringList("100%"));
    EXPECT_EQ(bars.Lines(4, rows), QStringList());
}

TEST(TransferBarsTest, ProgressOutOfRangeIsBroughtIntoIt)
{
    TransferBars bars("Uploading");
    bars.Add("a", "report.pdf");
    bars.SetProgress("a", 700);
    EXPECT_TRUE(bars.Lines(columns, rows)[0].endsWith("] 100%"));
    bars.SetProgress("a", -5);
    EXPECT_TRUE(bars.Lines(columns, rows)[0].endsWith("]   0%"));
    bars.SetProgress("nobody", 5);
}

TEST(TransferBarsTest, NamesAreMadeHarmless)
{
    TransferBars bars("Uploading");
    bars.Add("a", "two\nlines\x1b[2J.pdf");
    EXPECT_FALSE(bars.Lines(columns, rows)[0].contains('\n'));
    EXPECT_FALSE(bars.Lines(columns, rows)[0].contains('\x1b'));
}

} // namespace

} // namespace Norlis::Test

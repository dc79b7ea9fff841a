#include <apps/terminal/Text.h>

#include <QJsonObject>

#include <clocale>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using namespace Terminal;

class TextTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(std::setlocale(LC_ALL, "C.UTF-8"));
    }
};

TEST_F(TextTest, CharactersThatTerminalsObeyAreReplaced)
{
    EXPECT_EQ(Printable("a\x1b[2Jb\nc\rd\te"), QStringLiteral("a\ufffd[2Jb\ufffdc\ufffdd\ufffde"));
    EXPECT_EQ(Printable(QStringLiteral("\u009b\u0085\u2028\u202e\u2066\u200f")), QString(6, QChar(0xfffd)));
}

TEST_F(TextTest, CharactersThatNobodySeesAreReplaced)
{
    EXPECT_EQ(Printable(QStringLiteral("\ufeff\u200b\u061c\u2060\u00ad\U000e0001\U000e007f")),
              QString(7, QChar(0xfffd)));
}

TEST_F(TextTest, OtherCharactersStay)
{
    const auto text = QStringLiteral("Résumé – 年報 🚢 \"5%\" ערב.pdf");
    EXPECT_EQ(Printable(text), text);
    const auto joined = QStringLiteral("می\u200cخواهم 👩\u200d👧.pdf"); // spelled so
    EXPECT_EQ(Printable(joined), joined);
}

TEST_F(TextTest, JsonHasEscapesInThePlaceOfCharactersThatTerminalsObey)
{
    const QJsonObject object{{"name", QStringLiteral("\ufeffa\u009b2J\x1b\u202eb\x7f\U000e0041 – 年報 🚢 \"\\.pdf")}};
    const QString text = JsonText(QJsonDocument(object));
    EXPECT_EQ(Printable(text), text);
    EXPECT_TRUE(text.contains(QStringLiteral("– 年報 🚢"))) << text.toStdString();
    EXPECT_EQ(QJsonDocument::fromJson(text.toUtf8()).object(), object);
}

TEST_F(TextTest, WideAndCombiningCharactersAreCounted)
{
    EXPECT_EQ(DisplayWidth("abc"), 3);
    EXPECT_EQ(DisplayWidth(QStringLiteral("年報")), 4);
    EXPECT_EQ(DisplayWidth(QStringLiteral("e\u0301")), 1);
    EXPECT_EQ(DisplayWidth(QStringLiteral("🚢")), 2);
    EXPECT_EQ(PadRight(QStringLiteral("年"), 4), QStringLiteral("年  "));
}

TEST_F(TextTest, LongTextIsCutWithAnEllipsis)
{
    EXPECT_EQ(Shorten("report.pdf", 10), "report.pdf");
    EXPECT_EQ(Shorten("report.pdf", 6), QStringLiteral("repor…"));
    EXPECT_EQ(Shorten("report.pdf", 1), QStringLiteral("…"));
    EXPECT_EQ(Shorten("report.pdf", 0), "");
    EXPECT_EQ(Shorten(QStringLiteral("年報年報"), 6), QStringLiteral("年報…"));
    EXPECT_EQ(Shorten(QStringLiteral("🚢🚢🚢"), 4), QStringLiteral("🚢…")) << "no half of a surrogate pair";
}

TEST_F(TextTest, SizesTakeTheLargestUnitThatFits)
{
    EXPECT_EQ(HumanSize(0), "0 B");
    EXPECT_EQ(HumanSize(1023), "1023 B");
    EXPECT_EQ(HumanSize(1024), "1.0 KiB");
    EXPECT_EQ(HumanSize(10'239), "10 KiB");
    EXPECT_EQ(HumanSize(1024 * 1024 - 1), "1.0 MiB") << "not 1024 KiB";
    EXPECT_EQ(HumanSize(1'500'000), "1.4 MiB");
    EXPECT_EQ(HumanSize(5'000'000'000), "4.7 GiB");
    EXPECT_EQ(HumanSize(~quint64(0)), "16 EiB");
}

} // namespace

} // namespace Norlis::Test

#include <files/DocumentNames.h>

#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace Norlis::Files {

TEST(DocumentNamesTest, UsualNamesAreNames)
{
    for (const char* name :
         {"a", "a.pdf", ".hidden", "...", "..a", "a b.pdf", "-rf", "100%.pdf", "a#b", "a:b", "console", "com10.pdf",
          "com.pdf", "icon.pdf", "\xc3\xa9.pdf", "e\xcc\x81.pdf", "\xf0\x9f\x93\x84"}) {
        EXPECT_FALSE(ValidateName(QString::fromUtf8(name))) << name;
    }
}

TEST(DocumentNamesTest, WhatIsNoSegmentOfAPathIsNoName)
{
    for (const char* name :
         {"", ".", "..", "a/b", "/", "../a", "a\\b", "\\", "a\nb", "\x01", "a\x7f", "\xc2\x80", "\xc2\x9f"}) {
        EXPECT_TRUE(ValidateName(QString::fromUtf8(name))) << name;
    }
    EXPECT_TRUE(ValidateName(QString("a") + QChar(0) + "b"));
}

TEST(DocumentNamesTest, NamesOfDevicesAreNoNames)
{
    for (const char* name : {"con", "CON", "Con.pdf", "prn", "aux.tar.gz", "NUL", "com1", "COM9.pdf", "lpt1", "lpt9.x",
                             "con .pdf", " con"}) {
        EXPECT_TRUE(ValidateName(name)) << name;
    }
}

TEST(DocumentNamesTest, NamesOfUnfinishedFilesAreNoNames)
{
    for (const char* name : {".norlis-0123456789abcdef.part", "norlis-0123456789abcdef.part", ".norlis-mine.part"}) {
        EXPECT_TRUE(ValidateName(name)) << name;
    }
    for (const char* name : {".norlis-notes.pdf", "norlis-mine.part", "a.part"}) {
        EXPECT_FALSE(ValidateName(name)) << name;
    }
}

TEST(DocumentNamesTest, LengthIsCountedInBytes)
{
    EXPECT_FALSE(ValidateName(QString(255, 'a')));
    EXPECT_TRUE(ValidateName(QString(256, 'a')));
    EXPECT_FALSE(ValidateName(QString(127, QChar(0xe9))));
    EXPECT_TRUE(ValidateName(QString(128, QChar(0xe9))));
}

TEST(DocumentNamesTest, TheNumberStandsBeforeTheSuffix)
{
    EXPECT_EQ(NumberedName("report.pdf", 2), "report (2).pdf");
    EXPECT_EQ(NumberedName("report", 3), "report (3)");
    EXPECT_EQ(NumberedName("report.tar.gz", 2), "report.tar (2).gz");
    EXPECT_EQ(NumberedName(".hidden", 2), ".hidden (2)");
    EXPECT_EQ(NumberedName("report (2).pdf", 2), "report (2) (2).pdf");
    EXPECT_EQ(NumberedName("a.", 2), "a (2).");
}

TEST(DocumentNamesTest, WhatIsTooLongForASuffixIsShortened)
{
    EXPECT_EQ(NumberedName("a." + QString(253, 'b'), 2), "a." + QString(249, 'b') + " (2)");
}

TEST(DocumentNamesTest, ALongNameIsShortenedBetweenCharacters)
{
    const QString emoji = QString::fromUtf8("\xf0\x9f\x93\x84");
    for (int count = 50; count < 64; ++count) {
        for (const char* start : {"", "a", "ab", "abc"}) {
            const QString name = start + emoji.repeated(count) + ".pdf";
            if (ValidateName(name)) {
                continue;
            }
            const QString numbered = NumberedName(name, 9999);
            EXPECT_FALSE(ValidateName(numbered));
            EXPECT_TRUE(numbered.endsWith(" (9999).pdf"));
            EXPECT_EQ(QString::fromUtf8(numbered.toUtf8()), numbered);
            EXPECT_TRUE(name.startsWith(numbered.chopped(11)));
        }
    }
}

TEST(DocumentNamesTest, ALongSuffixLeavesAName)
{
    const QString numbered = NumberedName("a." + QString(240, 'b'), 2);
    EXPECT_FALSE(ValidateName(numbered));
}

TEST(DocumentNamesTest, IdsAreShortAndSafeAndDiffer)
{
    QSet<QString> ids;
    const QRegularExpression form("^[a-z2-7]{15}$");
    for (int number = 0; number < 10'000; ++number) {
        const QString id = IdOfName(QString::number(number) + ".pdf");
        EXPECT_TRUE(form.match(id).hasMatch()) << id.toStdString();
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 10'000);
    EXPECT_NE(IdOfName(QString::fromUtf8("\xc3\xa9")), IdOfName(QString::fromUtf8("e\xcc\x81")));
}

TEST(DocumentNamesTest, IdsStayWhatTheyAre)
{
    EXPECT_EQ(IdOfName("report.pdf"), "mrtoiufbnn33qzo");
}

} // namespace Norlis::Files

#include "WindowTest.h"

#include <apps/window/texts/Texts.h>

#include <QDateTime>
#include <QFileInfo>
#include <QLabel>
#include <QListView>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>
#include <QToolButton>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

/// What is told of the selected documents beside them.
class DetailsPaneTest : public WindowTest {
protected:
    QScrollArea* Pane() const
    {
        return Find<QScrollArea>("detailsPane");
    }

    QString Text(const QString& label) const
    {
        const auto found = Find<QLabel>(label);
        return found ? found->text().remove(QChar(0x200B)) : QString();
    }

    QStringList Buttons() const
    {
        QStringList texts;
        for (const QToolButton* const button : Pane()->findChildren<QToolButton*>()) {
            if (button->isVisible()) {
                texts.append(button->text());
            }
        }
        return texts;
    }

    /// Waits for it: a picture of that colour.
    bool Shows(const QColor& color) const
    {
        return WaitUntil([&] {
            const QImage picture = Pane()->findChild<QWidget*>("pagePicture")->grab().toImage();
            return picture.pixelColor(picture.rect().center()) == color;
        });
    }

    using WindowTest::Shows;

    void ShowPane()
    {
        QTest::keyClick(Documents(), Qt::Key_F9);
        ASSERT_TRUE(Pane());
    }
};

TEST_F(DetailsPaneTest, AKeyShowsItAndItsWidthIsKept)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    EXPECT_FALSE(Pane());
    ShowPane();
    EXPECT_EQ(Text("detailsName"), "Select a document to see its details.");
    const auto sides = window->findChild<QSplitter*>("sides");
    sides->setSizes({sides->width() - 400, 400});
    emit sides->splitterMoved(0, 1);
    const int width = Pane()->width();
    Close();
    Open();
    ASSERT_TRUE(Pane());
    EXPECT_EQ(Pane()->width(), width);
    QTest::keyClick(Documents(), Qt::Key_F9);
    EXPECT_FALSE(Pane());
}

TEST_F(DetailsPaneTest, WhatIsInTheCloudOnlyHasOneVersion)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    ShowPane();
    Select({"a.pdf"});
    EXPECT_EQ(Text("detailsName"), "a.pdf");
    EXPECT_EQ(Text("detailsState"), "Only in the cloud");
    for (const QLabel* const label : Pane()->findChildren<QLabel*>()) {
        EXPECT_FALSE(label->isVisible() && label->text() == "In the cloud") << "it is said already";
    }
    EXPECT_THAT(Text("detailsInCloud").toStdString(), HasSubstr(" · Today"));
    EXPECT_EQ(Text("detailsHere"), "");
    EXPECT_EQ(Text("detailsFolder"), "");
    EXPECT_EQ(Buttons(), QStringList({"Open", "Download", "Remove"}));
    const auto picture = [this] { return Pane()->findChild<QWidget*>("pagePicture")->grab().toImage(); };
    EXPECT_TRUE(WaitUntil([&] { return picture().pixelColor(picture().rect().center()) == QColor(Qt::red); }));
}

TEST_F(DetailsPaneTest, AChangedDocumentHasTwoVersionsAndTheListShowsThatOfTheCloud)
{
    OpenWithLocalCopy();
    ShowPane();
    EXPECT_TRUE(WaitUntil([&] { return Buttons() == QStringList({"Open", "Show in Folder", "Remove"}); }));
    const QString inCloud = Text("detailsInCloud");
    WriteFile(Local("downloads/a.pdf"), PdfOfColor(Qt::blue) + QByteArray(50'000, '\n'));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedLocally); }));
    EXPECT_TRUE(WaitUntil([&] { return Text("detailsState") == "Changed on this computer"; }));
    EXPECT_EQ(Text("detailsInCloud"), inCloud);
    const QFileInfo copy(Local("downloads/a.pdf"));
    EXPECT_EQ(Text("detailsHere"), Window::SizeText(copy.size()) + " · " + Window::DateText(copy.lastModified()));
    EXPECT_EQ(Text("detailsFolder"), Local("downloads"));
    EXPECT_THAT(Find<QLabel>("detailsFolder")->toolTip().toStdString(), HasSubstr(Local("downloads").toStdString()));
    EXPECT_EQ(Buttons(), QStringList({"Open", "Upload Changes", "Show in Folder", "Remove"}));
    const auto shown = Documents()->model()->index(0, 0);
    EXPECT_EQ(shown.data(Host::CloudDocumentsModel::SizeRole).toLongLong(), QFileInfo(Cloud("a.pdf")).size());
    EXPECT_TRUE(inCloud.startsWith(Window::SizeText(QFileInfo(Cloud("a.pdf")).size())));
}

TEST_F(DetailsPaneTest, OfTwoVersionsItShowsThatOfTheListAndSaysSo)
{
    OpenWithLocalCopy();
    ShowPane();
    EXPECT_TRUE(Shows(Qt::red));
    EXPECT_EQ(Text("detailsVersion"), "") << "there is but one";
    WriteFile(Local("downloads/a.pdf"), PdfOfColor(Qt::blue));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Text("detailsState") == "Changed on this computer"; }));
    EXPECT_EQ(Text("detailsVersion"), "The version in the cloud");
    EXPECT_TRUE(Shows(Qt::red));
    PutIntoCloud("a.pdf", PdfOfColor(Qt::green));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Text("detailsState") == "Changed on both sides"; }));
    EXPECT_EQ(Text("detailsVersion"), "The version in the cloud");
    EXPECT_TRUE(Shows(Qt::green));
}

TEST_F(DetailsPaneTest, OfSeveralDocumentsTheNumberAndTheSizeAreTold)
{
    PutIntoCloud("a.pdf", QByteArray("%PDF-").leftJustified(1024, ' '));
    PutIntoCloud("b.pdf", QByteArray("%PDF-").leftJustified(2048, ' '));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    ShowPane();
    Select({"a.pdf", "b.pdf"});
    EXPECT_EQ(Text("detailsName"), "2 documents");
    EXPECT_EQ(Text("detailsInCloud"), "3.0 KiB");
    EXPECT_EQ(Text("detailsState"), "");
    EXPECT_EQ(Buttons(), QStringList({"Open", "Download", "Remove"}));
}

TEST_F(DetailsPaneTest, OpeningIsOfferedForAsManyAsAreOpenedWithoutAQuestion)
{
    QStringList names;
    for (int number = 10; number < 21; ++number) {
        names.append(QString("%1.pdf").arg(number));
        PutIntoCloud(names.last(), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows(names));
    ShowPane();
    EXPECT_FALSE(Find<QLabel>("detailsName")->font().bold()) << "a hint is no name";
    Select(names);
    EXPECT_TRUE(Find<QLabel>("detailsName")->font().bold());
    EXPECT_EQ(Buttons(), QStringList({"Download", "Remove"}));
    Select(names.mid(1));
    EXPECT_EQ(Buttons(), QStringList({"Open", "Download", "Remove"}));
}

TEST_F(DetailsPaneTest, ThePictureGivesWayToTheButtonsAsFarAsItIsStillOne)
{
    OpenWithLocalCopy();
    ShowPane();
    const auto& picture = *Pane()->findChild<QWidget*>("pagePicture");
    const auto heightOfPicture = [&picture] { return picture.height(); };
    const auto isScrolled = [this] { return Pane()->verticalScrollBar()->isVisible(); };
    window->resize(1100, 1000);
    ASSERT_TRUE(WaitUntil([&] { return heightOfPicture() == picture.maximumHeight(); }));
    EXPECT_GT(heightOfPicture(), Pane()->width()) << "a whole page is higher than wide";
    EXPECT_FALSE(isScrolled());
    const int whole = heightOfPicture();
    window->resize(1100, 650);
    ASSERT_TRUE(WaitUntil([&] { return heightOfPicture() < whole; }));
    EXPECT_FALSE(isScrolled());
    window->resize(1100, 400);
    EXPECT_TRUE(WaitUntil([&] { return isScrolled(); }));
    EXPECT_GE(heightOfPicture(), 5 * Pane()->fontMetrics().lineSpacing());
}

TEST_F(DetailsPaneTest, NothingIsWiderThanThePane)
{
    const QString name = QString("a").repeated(120) + ".pdf";
    PutIntoCloud(name, PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({name}));
    ShowPane();
    Select({name});
    QCoreApplication::processEvents();
    EXPECT_EQ(Text("detailsName"), name);
    EXPECT_LE(Pane()->widget()->width(), Pane()->viewport()->width());
}

} // namespace

} // namespace Norlis::Test

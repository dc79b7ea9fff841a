#include "WindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace Norlis::Test {

namespace {

/// The buttons that leave documents of one state.
class FilterChipsTest : public WindowTest {
protected:
    /// "c.pdf" is only in the cloud, "a.pdf" here too, "b.pdf" changed here, "d.pdf" on both sides.
    void SetUp() override
    {
        for (const auto name : {"a.pdf", "b.pdf", "c.pdf", "d.pdf"}) {
            PutIntoCloud(name, PdfOfColor(Qt::red));
        }
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf", "d.pdf"}));
        Select({"a.pdf", "b.pdf", "d.pdf"});
        Action("Download")->trigger();
        ASSERT_TRUE(IsUpToDate("a.pdf"));
        ASSERT_TRUE(IsUpToDate("b.pdf"));
        ASSERT_TRUE(IsUpToDate("d.pdf"));
        WriteFile(Local("downloads/b.pdf"), PdfOfColor(Qt::blue));
        WriteFile(Local("downloads/d.pdf"), PdfOfColor(Qt::blue));
        PutIntoCloud("d.pdf", PdfOfColor(Qt::green));
        Refresh();
        ASSERT_TRUE(WaitUntil([&] { return StateOf("d.pdf") == static_cast<int>(State::ChangedOnBothSides); }));
    }
};

TEST_F(FilterChipsTest, EachLeavesTheDocumentsOfItsStateAndTellsTheirNumber)
{
    ClickButton("Changed 2");
    EXPECT_EQ(Names(), QStringList({"b.pdf", "d.pdf"}));
    EXPECT_TRUE(Status().startsWith("2 of 4 documents")) << qPrintable(Status());
    ClickButton("Not Here 1");
    EXPECT_EQ(Names(), QStringList("c.pdf"));
    ClickButton("Conflicts 1");
    EXPECT_EQ(Names(), QStringList("d.pdf"));
    ClickButton("All 4");
    EXPECT_EQ(Names().size(), 4);
}

TEST_F(FilterChipsTest, TheChoiceStaysWhileOneSearchesAndTheEmptyPageSaysWhy)
{
    ClickButton("Changed 2");
    Type(Find<QLineEdit>("search"), "b");
    EXPECT_EQ(Names(), QStringList("b.pdf"));
    EXPECT_TRUE(Button("Changed 1") && Button("All 1") && Button("Not Here")) << "of what is searched for";
    Type(Find<QLineEdit>("search"), "a.pdf");
    EXPECT_EQ(EmptyTitle(), "No matching documents");
    EXPECT_EQ(Find<QWidget>("emptyPage")->findChildren<QLabel*>().value(2)->text(),
              QStringLiteral("Only changed documents are shown.\nYou searched for “a.pdf”."));
    ClickButton("Show All Documents");
    EXPECT_EQ(Names().size(), 4);
    EXPECT_EQ(Find<QLineEdit>("search")->text(), "");
    EXPECT_TRUE(Button("All 4")->isChecked());
}

TEST_F(FilterChipsTest, WhatComesIntoAStateAppearsAndWhatLeavesItGoes)
{
    ClickButton("Not Here 1");
    Select({"c.pdf"});
    Action("Download")->trigger();
    EXPECT_TRUE(Shows({}));
    EXPECT_TRUE(WaitUntil([&] { return Button("Not Here"); }));
    PutIntoCloud("e.pdf", PdfOfColor(Qt::red));
    Refresh();
    EXPECT_TRUE(Shows({"e.pdf"}));
}

TEST_F(FilterChipsTest, TheArrowKeysChooseThem)
{
    ASSERT_TRUE(WaitUntil([&] { return Button("Conflicts 1"); }));
    Button("All 4")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(Names(), QStringList("c.pdf"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(Names(), QStringList({"b.pdf", "d.pdf"}));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_EQ(Names(), QStringList("c.pdf"));
}

} // namespace

} // namespace Norlis::Test

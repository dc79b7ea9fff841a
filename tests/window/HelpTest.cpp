#include "WindowTest.h"

#include <contracts/Version.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>

namespace Norlis::Test {

namespace {

using testing::Contains;

/// What the help menu has, and the menus that appear in the view.
class HelpTest : public WindowTest {};

TEST_F(HelpTest, ThePageOfKeysHasEachKeyOfTheMenus)
{
    OpenCloud();
    QTest::keyClick(window.get(), Qt::Key_F1);
    ASSERT_TRUE(WaitUntil([&] { return Find<QTreeWidget>("keys"); }));
    QStringList keys;
    for (const auto item : Find<QTreeWidget>("keys")->findItems("*", Qt::MatchWildcard | Qt::MatchRecursive, 1)) {
        keys.append(item->text(0) + ": " + item->text(1));
    }
    for (const auto key :
         {"Upload: Ctrl+U", "Open: Ctrl+O", "List: Ctrl+2", "Keyboard Shortcuts: F1", "Settings: Ctrl+,",
          "Quit: Ctrl+Q, Ctrl+W", "Next Page: PgDown", "Close Quick Look: Space, Esc"}) {
        EXPECT_THAT(keys, Contains(QString(key)));
    }
    for (const QAction* const action : window->findChildren<QAction*>()) {
        const QString key = action->shortcut().toString(QKeySequence::NativeText);
        const bool isListed = std::any_of(keys.begin(), keys.end(), [&](const QString& each) {
            return each.section(": ", 1).split(", ").contains(key) || key == ',';
        });
        EXPECT_TRUE(key.isEmpty() || isListed || action->text().isEmpty()) << qPrintable(action->text() + ' ' + key);
    }
    QTest::keyClick(Find<QTreeWidget>("keys"), Qt::Key_Escape);
    EXPECT_FALSE(Find<QTreeWidget>("keys"));
}

TEST_F(HelpTest, ThePageOfKeysFitsTheScreenWithLargeLettersToo)
{
    QFont large = QApplication::font();
    large.setPointSizeF(large.pointSizeF() * 2);
    QApplication::setFont(large);
    OpenCloud();
    QTest::keyClick(window.get(), Qt::Key_F1);
    ASSERT_TRUE(WaitUntil([&] { return Find<QTreeWidget>("keys"); }));
    const QWidget* const dialog = Find<QTreeWidget>("keys")->window();
    EXPECT_LE(dialog->height(), dialog->screen()->availableGeometry().height());
    large.setPointSizeF(large.pointSizeF() / 2);
    QApplication::setFont(large);
}

TEST_F(HelpTest, ThePageOfKeysIsSeenWholeWhereTheScreenHasTheRoom)
{
    const QFont before = QApplication::font();
    QFont small = before;
    small.setPointSizeF(before.pointSizeF() / 2); // the tests' screen is low
    QApplication::setFont(small);
    OpenCloud();
    Action("Keyboard Shortcuts")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Find<QTreeWidget>("keys"); }));
    const auto list = Find<QTreeWidget>("keys");
    ASSERT_LT(list->window()->height(), list->screen()->availableGeometry().height() * 8 / 10);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(list->horizontalScrollBar()->maximum(), 0);
    const auto group = list->topLevelItem(list->topLevelItemCount() - 1);
    const QRect last = list->visualItemRect(group->child(group->childCount() - 1));
    EXPECT_LT(list->viewport()->height() - last.bottom(), last.height()) << "no empty line on a screen that is low";
    window.reset();
    QApplication::setFont(before);
}

TEST_F(HelpTest, LargeLettersCutNoKey)
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 1.7);
    QApplication::setFont(large);
    OpenCloud();
    Action("Keyboard Shortcuts")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Find<QTreeWidget>("keys"); }));
    const auto list = Find<QTreeWidget>("keys");
    for (QTreeWidgetItemIterator entry(list); *entry; ++entry) {
        EXPECT_LT(list->fontMetrics().horizontalAdvance((*entry)->text(1)), list->columnWidth(1));
    }
    window.reset();
    QApplication::setFont(before);
}

TEST_F(HelpTest, TheProgramTellsWhatItIs)
{
    Open();
    Action("About Documents")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Find<QLabel>("aboutText"); }));
    const QString text = Find<QLabel>("aboutText")->text();
    EXPECT_TRUE(text.contains(NORLIS_CLOUD_VERSION_STR)) << qPrintable(text);
    EXPECT_TRUE(text.contains(qVersion())) << qPrintable(text);
    EXPECT_TRUE(text.contains("LGPL")) << qPrintable(text);
    EXPECT_TRUE(Button("Close")->icon().isNull()) << "the buttons of dialogs have words alone";
}

TEST_F(HelpTest, TheMenuKeyOpensTheMenuBesideTheDocument)
{
    for (int number = 10; number < 70; ++number) {
        PutIntoCloud(QString("document %1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 60; }));
    Select({"document 69.pdf"}); // which is out of sight
    Documents()->scrollToTop();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(Documents(), &event);
    const auto menu = Find<QMenu>("contextMenu");
    ASSERT_TRUE(menu);
    EXPECT_THAT(menu->actions(), Contains(Action("Open")));
    const QRect view(Documents()->viewport()->mapToGlobal(QPoint()), Documents()->viewport()->size());
    EXPECT_TRUE(view.contains(menu->pos()) || view.contains(menu->geometry().bottomLeft()));
    menu->close();
}

TEST_F(HelpTest, ChangesAreGivenUpAfterAQuestionOnly)
{
    OpenWithLocalCopy();
    EXPECT_FALSE(Action("Use the Cloud’s Version…")->isVisible()) << "there is nothing to give up";
    const auto original = ReadFile(Cloud("a.pdf"));
    const QByteArray changed = PdfOfColor(Qt::blue);
    WriteFile(Local("downloads/a.pdf"), changed);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Action("Use the Cloud’s Version…")->isVisible(); }));
    Action("Use the Cloud’s Version…")->trigger();
    Answer("Cancel");
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), changed);
    Action("Use the Cloud’s Version…")->trigger();
    Answer("Use the Cloud’s");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == original; }));
}

} // namespace

} // namespace Norlis::Test

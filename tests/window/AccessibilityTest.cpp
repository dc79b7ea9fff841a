#include "WindowTest.h"

#include <apps/window/texts/Translations.h>
#include <apps/window/widgets/TintedFrame.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <QToolBar>
#include <QTranslator>
#include <QXmlStreamReader>

#include <cmath>

namespace Norlis::Test {

namespace {

using testing::IsEmpty;

bool CanBeUsed(const QWidget& widget)
{
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QListView*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget);
}

/// Parts of Qt's own widgets.
bool IsPartOfAnother(const QWidget& widget)
{
    return qobject_cast<const QLineEdit*>(widget.parentWidget()) ||
           qobject_cast<const QComboBox*>(widget.parentWidget()) ||
           qobject_cast<const QAbstractSpinBox*>(widget.parentWidget()) || widget.objectName().startsWith("qt_");
}

/// Whether the Tab key leads there, or the arrow keys from where it leads.
bool IsReached(QWidget& widget, const QSet<QWidget*>& byTab)
{
    const auto button = qobject_cast<QAbstractButton*>(&widget);
    const auto together =
        button && button->group() ? button->group()->buttons() : QList<QAbstractButton*>(); // one is checked
    return byTab.contains(&widget) ||
           std::any_of(together.begin(), together.end(), [&](QAbstractButton* each) { return byTab.contains(each); });
}

/// The entries of a menu and of those below it that the keyboard reaches, by letters all the way or by a key.
QSet<const QAction*> InReach(const QMenu& menu, bool isOpenedByLetters)
{
    QSet<const QAction*> found;
    const auto entries = menu.actions();
    for (const QAction* const entry : entries) {
        const bool hasLetter = isOpenedByLetters && entry->text().contains('&');
        if (entry->menu()) {
            found += InReach(*entry->menu(), hasLetter);
        }
        if (hasLetter || !entry->shortcut().isEmpty()) {
            found.insert(entry);
        }
    }
    return found;
}

/// The letters that are pressed with Alt.
QStringList LettersOf(const QList<QAction*>& actions)
{
    QStringList letters;
    for (const QAction* const action : actions) {
        const int mark = action->text().indexOf('&');
        if (mark >= 0) {
            letters.append(action->text().mid(mark + 1, 1).toUpper());
        }
    }
    return letters;
}

class AccessibilityTest : public WindowTest {
protected:
    /// What their letters are.
    QStringList MenusWithLettersTwice() const
    {
        QList<QList<QAction*>> menus = {window->menuBar()->actions()};
        for (const QMenu* const menu : window->findChildren<QMenu*>()) {
            menus.append(menu->actions());
        }
        EXPECT_GE(menus.size(), 4); // the bar and three menus
        QStringList found;
        for (const auto& actions : qAsConst(menus)) {
            QStringList letters = LettersOf(actions);
            const QString all = letters.join(' ');
            if (letters.removeDuplicates() > 0) {
                found.append(all);
            }
        }
        return found;
    }

    QStringList Nameless() const
    {
        QStringList found;
        for (QWidget* const widget : window->findChildren<QWidget*>()) {
            if (!widget->isVisible() || !CanBeUsed(*widget) || IsPartOfAnother(*widget)) {
                continue;
            }
            const auto known = QAccessible::queryAccessibleInterface(widget);
            if (!known || known->text(QAccessible::Name).isEmpty()) {
                found.append(QString(widget->metaObject()->className()) + ' ' + widget->objectName());
            }
        }
        return found;
    }

    /// What the Tab key reaches.
    QSet<QWidget*> Reached()
    {
        QSet<QWidget*> reached;
        window->activateWindow();
        for (int step = 0; step < 60; ++step) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(), Qt::Key_Tab);
            if (QApplication::focusWidget()) {
                reached.insert(QApplication::focusWidget());
            }
        }
        return reached;
    }

    QStringList Unreached()
    {
        const auto reached = Reached();
        QStringList missed;
        for (QWidget* const widget : window->findChildren<QWidget*>()) {
            const bool isWanted =
                widget->isVisible() && widget->isEnabled() && CanBeUsed(*widget) && !IsPartOfAnother(*widget);
            if (isWanted && !IsReached(*widget, reached)) {
                const auto button = qobject_cast<QAbstractButton*>(widget);
                missed.append(QString(widget->metaObject()->className()) + ' ' + widget->objectName() + ' ' +
                              (button ? button->text() : QString()));
            }
        }
        return missed;
    }
};

TEST_F(AccessibilityTest, EveryControlHasANameForAScreenReader)
{
    Open();
    EXPECT_THAT(Nameless(), IsEmpty());
    Close();
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::red)), LocalFile("c.txt", "text")});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"b.pdf finished"}; }));
    EXPECT_THAT(Nameless(), IsEmpty());
}

TEST_F(AccessibilityTest, LargeLettersLeaveEveryToolInSight)
{
    const QFont before = QApplication::font();
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const auto tools = Find<QToolBar>();
    const auto isEachInSight = [tools] {
        const auto actions = tools->actions();
        return std::all_of(actions.begin(), actions.end(), [&](QAction* action) {
            const QWidget& tool = *tools->widgetForAction(action);
            return tool.isVisible() && tools->rect().contains(tool.geometry()) &&
                   tool.width() >= tool.sizeHint().width();
        });
    };
    const auto& search = *Find<QLineEdit>("search");
    const auto isBeside = [&] {
        return search.mapTo(window.get(), QPoint()).x() > tools->geometry().right() &&
               search.mapTo(window.get(), QPoint()).y() < tools->mapTo(window.get(), QPoint()).y() + tools->height();
    };
    const auto isBelow = [&] {
        return search.mapTo(window.get(), QPoint()).y() >= tools->mapTo(window.get(), QPoint()).y() + tools->height();
    };
    const auto hasTexts = [&] { return tools->toolButtonStyle() == Qt::ToolButtonTextUnderIcon; };
    window->resize(1100, 760);
    EXPECT_TRUE(WaitUntil([&] { return isEachInSight() && hasTexts() && isBeside(); }));
    window->resize(window->minimumSizeHint().width(), 760);
    EXPECT_TRUE(WaitUntil([&] { return isEachInSight() && isBelow(); }));
    QFont large = before;
    large.setPointSize(18);
    QApplication::setFont(large);
    window->resize(800, 600);
    EXPECT_TRUE(WaitUntil([&] { return isEachInSight() && !hasTexts(); }));
    window->resize(3000, 1500);
    EXPECT_TRUE(WaitUntil([&] { return isEachInSight() && hasTexts() && isBeside(); }));
    window->resize(2000, 600);
    EXPECT_TRUE(WaitUntil([&] { return isEachInSight() && !hasTexts() && isBeside(); }));
    window.reset();
    QApplication::setFont(before);
}

TEST_F(AccessibilityTest, MessagesCanBeReadInEachPalette)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](qreal part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    for (const auto& [text, paper] :
         {std::pair(Qt::black, QColor(239, 239, 239)), std::pair(Qt::white, QColor(45, 45, 45)),
          std::pair(Qt::white, QColor(Qt::black)), std::pair(Qt::black, QColor(Qt::white))}) {
        QPalette palette;
        palette.setColor(QPalette::Window, paper);
        for (const auto tint : {Window::Tint::Notice, Window::Tint::Problem}) {
            const QColor behind = Window::TintOf(tint, palette);
            EXPECT_NE(behind, paper);
            const qreal one = luminance(text) + 0.05;
            const qreal other = luminance(behind) + 0.05;
            EXPECT_GE(qMax(one, other) / qMin(one, other), 4.5) << qPrintable(behind.name());
        }
    }
}

TEST_F(AccessibilityTest, DocumentsAndTransfersSayWhatTheyAre)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const QString document = Documents()->model()->index(0, 0).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(document.startsWith("a.pdf, Only in the cloud, ")) << qPrintable(document);
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"b.pdf finished"}; }));
    const auto list = window->findChild<QListView*>("transfers");
    EXPECT_EQ(list->model()->index(0, 0).data(Qt::AccessibleTextRole).toString(),
              "Upload of b.pdf: finished. In the cloud");
}

TEST_F(AccessibilityTest, EachEntryOfAMenuHasALetterOfItsOwn)
{
    for (const auto language : {QLocale::English, QLocale::German}) {
        Window::InstallTranslations(*qApp, QLocale(language));
        OpenCloud();
        EXPECT_EQ(MenusWithLettersTwice(), QStringList()) << language;
        window.reset();
        qDeleteAll(qApp->findChildren<QTranslator*>());
    }
}

TEST_F(AccessibilityTest, TheTabKeyReachesEveryControl)
{
    Open();
    EXPECT_THAT(Unreached(), IsEmpty());
    Close();
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::red)), LocalFile("c.txt", "text")});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"b.pdf finished"}; }));
    EXPECT_THAT(Unreached(), IsEmpty());
}

TEST_F(AccessibilityTest, EveryActionIsInAMenuAndHasAKeyOrALetter)
{
    for (const auto language : {QLocale::English, QLocale::German}) {
        Window::InstallTranslations(*qApp, QLocale(language));
        OpenCloud();
        QSet<const QAction*> inReach;
        const auto menus = window->menuBar()->actions();
        for (const QAction* const menu : menus) {
            inReach.insert(menu);
            inReach += InReach(*menu->menu(), menu->text().contains('&'));
        }
        int actions = 0;
        for (const QAction* const action : window->findChildren<QAction*>()) {
            const bool isPartOfAField = qobject_cast<QLineEdit*>(action->parent());
            if (!action->isSeparator() && !action->text().isEmpty() && !isPartOfAField) {
                EXPECT_TRUE(inReach.contains(action)) << qPrintable(action->text());
                ++actions;
            }
        }
        EXPECT_GT(actions, 30);
        window.reset();
        qDeleteAll(qApp->findChildren<QTranslator*>());
    }
}

TEST_F(AccessibilityTest, TheDialogsCanBeUsedByKeyboardAndScreenReader)
{
    OpenCloud();
    for (const auto name : {"Settings…", "Keyboard Shortcuts", "About Documents"}) {
        Action(name)->trigger();
        ASSERT_TRUE(WaitUntil([&] {
            const auto opened = QApplication::activeModalWidget();
            return opened && opened->isActiveWindow() && QApplication::focusWidget();
        }));
        EXPECT_THAT(Nameless(), IsEmpty()) << name;
        QWidget* const dialog = QApplication::activeModalWidget();
        QSet<QWidget*> reached;
        for (int step = 0; step < 30; ++step) {
            reached.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (QWidget* const widget : dialog->findChildren<QWidget*>()) {
            const bool isWanted =
                widget->isVisible() && widget->isEnabled() && CanBeUsed(*widget) && !IsPartOfAnother(*widget);
            EXPECT_TRUE(!isWanted || IsReached(*widget, reached))
                << name << ": " << widget->metaObject()->className() << ' ' << qPrintable(widget->objectName());
        }
        QTest::keyClick(dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog->isVisible()) << name;
        window->activateWindow();
    }
}

TEST_F(AccessibilityTest, TheKeyboardAloneDoesTheMainJob)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    Open();
    const auto press = [](int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    };
    for (int step = 0; step < 10 && QApplication::focusWidget() != Find<QLineEdit>("folder"); ++step) {
        press(Qt::Key_Tab);
    }
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), Cloud());
    press(Qt::Key_Return);
    ASSERT_TRUE(Documents() || WaitUntil([&] { return Documents(); }));
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "b");
    ASSERT_TRUE(Shows({"b.pdf"}));
    press(Qt::Key_Return);
    press(Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(IsUpToDate("b.pdf"));
    const QByteArray changed = PdfOfColor(Qt::green);
    WriteFile(Local("downloads/b.pdf"), changed);
    press(Qt::Key_F5);
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("b.pdf")) == changed; }));
    ASSERT_TRUE(IsUpToDate("b.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return Action("Remove")->isEnabled(); }));
    press(Qt::Key_Delete);
    EXPECT_TRUE(Shows({}));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(Shows({"b.pdf"}));
}

TEST_F(AccessibilityTest, EveryTextIsTranslated)
{
    for (const auto language : {"de", "en"}) {
        QFile file(QString(NORLIS_TRANSLATIONS "/norlis-documents_%1.ts").arg(language));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QXmlStreamReader reader(&file);
        int texts = 0;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("translation")) {
                EXPECT_FALSE(reader.attributes().hasAttribute("type")) << language << ", line " << reader.lineNumber();
                ++texts;
            }
        }
        EXPECT_FALSE(reader.hasError());
        EXPECT_GT(texts, 0);
    }
}

TEST_F(AccessibilityTest, TheWindowSpeaksTheLanguageOfItsUser)
{
    QTranslator* last = nullptr;
    Window::InstallTranslations(*qApp, QLocale(QLocale::German));
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Hochladen …") && Action("Hochladen …")->isEnabled(); }));
    EXPECT_TRUE(WaitUntil([&] { return Button("Hochladen …"); }));
    window.reset();
    for (QTranslator* const translator : qApp->findChildren<QTranslator*>()) {
        last = translator;
        delete translator;
    }
    EXPECT_TRUE(last);
    Open();
    EXPECT_TRUE(Action("Upload…"));
}

} // namespace

} // namespace Norlis::Test

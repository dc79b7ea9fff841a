// The windows of examples/quick as they are seen on a display.

#include "QmlTest.h"

#include <QDir>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSet>
#include <QTest>

namespace Norlis::Test {

namespace {

class QuickWindowTest : public QmlTest {
protected:
    void Show(const QString& file)
    {
        engine.setInitialProperties({{"service", Local("cloud")}, {"downloads", LocalUrl("there")}});
        engine.load(NORLIS_PROJECT "/examples/quick/" + file);
        ASSERT_EQ(engine.rootObjects().size(), 1);
        window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
        ASSERT_TRUE(window);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }

    /// Everything that is in the window.
    QList<QQuickItem*> Items() const
    {
        QList<QQuickItem*> items = {window->contentItem()};
        for (int index = 0; index < items.size(); ++index) {
            items += items[index]->childItems();
        }
        return items;
    }

    /// The visible item whose property "text" is this; null when there is none.
    QQuickItem* ItemOf(const QString& text) const
    {
        for (auto* const item : Items()) {
            if (item->isVisible() && item->property("text").toString() == text) {
                return item;
            }
        }
        return nullptr;
    }

    bool Shows(const QString& text) const
    {
        return WaitUntil([&] { return ItemOf(text) != nullptr; });
    }

    void Click(const QString& text)
    {
        ASSERT_TRUE(Shows(text)) << qPrintable(text);
        const auto* item = ItemOf(text);
        QTest::mouseClick(window, Qt::LeftButton, {},
                          item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
    }

    /// What stands on the display where the window is.
    QImage Picture() const
    {
        return window->screen()->grabWindow(window->winId()).toImage();
    }

    /// Whether an item comes to have so many colors there.
    bool HasColors(const QQuickItem* item, int count) const
    {
        return WaitUntil([&] {
            const auto area = item->mapRectToScene(item->boundingRect()).toRect();
            const QImage image = Picture().copy(area);
            QSet<QRgb> colors;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    colors.insert(image.pixel(x, y));
                }
            }
            return colors.size() >= count;
        });
    }

    void Keep(const QString& name) const
    {
        const QString target = qEnvironmentVariable("NORLIS_PICTURES");
        if (!target.isEmpty()) {
            EXPECT_TRUE(QDir().mkpath(target) && Picture().save(target + '/' + name + ".png"));
        }
    }

    void PutSample(const QString& name)
    {
        ASSERT_TRUE(QFile::copy(NORLIS_SAMPLES "/" + name, Local("cloud/" + name)));
    }

    QQuickWindow* window = nullptr; ///< the engine's
};

TEST_F(QuickWindowTest, ListFetchesTheDocumentThatIsClicked)
{
    PutSample("garden-year.pdf");
    Show("list.qml");
    ASSERT_TRUE(Shows("garden-year.pdf"));
    EXPECT_TRUE(HasColors(ItemOf("garden-year.pdf"), 10)) << "it is blank";
    Keep("quick-list");

    Click("garden-year.pdf");
    EXPECT_TRUE(Shows(Local("there/garden-year.pdf")));
    EXPECT_TRUE(QFile::exists(Local("there/garden-year.pdf")));
}

TEST_F(QuickWindowTest, ListSaysWhatHasFailed)
{
    PutSample("garden-year.pdf");
    Show("list.qml");
    ASSERT_TRUE(Shows("garden-year.pdf"));
    WriteFile(Local("there/garden-year.pdf"), "another file");
    Click("garden-year.pdf");
    EXPECT_TRUE(WaitUntil([&] {
        const auto items = Items();
        return std::any_of(items.begin(), items.end(), [](const QQuickItem* item) {
            return item->property("text").toString().startsWith("The document was not downloaded: ");
        });
    }));
}

TEST_F(QuickWindowTest, DocumentsComeWithTheirPictures)
{
    PutSample("garden-year.pdf");
    PutSample("ferry-ticket.pdf");
    Show("documents.qml");
    ASSERT_TRUE(Shows("garden-year.pdf"));
    ASSERT_TRUE(Shows("ferry-ticket.pdf"));
    QList<QQuickItem*> pictures;
    ASSERT_TRUE(WaitUntil([&] {
        pictures.clear();
        for (auto* const item : Items()) {
            if (item->inherits("QQuickImage") && !item->property("source").toUrl().isEmpty()) {
                pictures << item;
            }
        }
        return pictures.size() == 2;
    }));
    for (const auto* picture : qAsConst(pictures)) {
        EXPECT_TRUE(HasColors(picture, 20));
    }
    Keep("quick-documents");
}

TEST_F(QuickWindowTest, WhatIsDroppedIsUploadedAndCanBeFetchedAndRemoved)
{
    Show("documents.qml");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(NORLIS_SAMPLES "/ferry-ticket.pdf")});
    const QPoint middle(window->width() / 2, window->height() / 2);
    ASSERT_TRUE(Shows("Sign out"));
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &drop);
    ASSERT_TRUE(Shows("ferry-ticket.pdf"));
    EXPECT_TRUE(QFile::exists(Local("cloud/ferry-ticket.pdf")));

    Click("Remove");
    EXPECT_TRUE(WaitUntil([&] { return !ItemOf("ferry-ticket.pdf"); }));
    EXPECT_FALSE(QFile::exists(Local("cloud/ferry-ticket.pdf")));
}

TEST_F(QuickWindowTest, SignsOutAndInAgain)
{
    Show("documents.qml");
    Click("Sign out");
    Click("Sign in");
    EXPECT_TRUE(Shows("Sign out"));
}

} // namespace

} // namespace Norlis::Test

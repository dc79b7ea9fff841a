#include "WindowTest.h"

#include <apps/window/PagePicture.h>
#include <NorlisTestKit/FaultServer.h>

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QSet>
#include <QTest>

namespace Norlis::Test {

namespace {

using namespace TestKit;

/// Pictures of the window in its main states. They are stored in the folder that NORLIS_PICTURES names, to be looked
/// at.
class PicturesTest : public WindowTest {
protected:
    /// Documents as people have them.
    void PutSamples()
    {
        const QStringList samples = QDir(NORLIS_SAMPLES).entryList({"*.pdf"}, QDir::Files);
        ASSERT_FALSE(samples.isEmpty());
        for (const QString& name : samples) {
            ASSERT_TRUE(QFile::copy(NORLIS_SAMPLES "/" + name, Cloud(name)));
            QFile copy(Cloud(name));
            ASSERT_TRUE(copy.open(QFile::ReadWrite));
            ASSERT_TRUE(copy.setFileTime(QDateTime({2026, 5, 4}, {9, 30}), QFile::FileModificationTime));
        }
    }

    void Take(const QString& name)
    {
        window->resize(1080, 700);
        QCoreApplication::processEvents();
        const QPixmap picture = window->grab();
        EXPECT_EQ(picture.size(), window->size() * qApp->devicePixelRatio());
        const QImage image = picture.toImage();
        QSet<QRgb> colors;
        for (int y = 0; y < image.height(); y += 3) {
            for (int x = 0; x < image.width(); x += 3) {
                colors.insert(image.pixel(x, y));
            }
        }
        EXPECT_GT(colors.size(), 20) << "it is blank";
        const QString target = qEnvironmentVariable("NORLIS_PICTURES");
        if (!target.isEmpty()) {
            EXPECT_TRUE(QDir().mkpath(target));
            const QString scale = qFuzzyCompare(qApp->devicePixelRatio(), 1.0) ? "" : "-200";
            EXPECT_TRUE(picture.save(target + '/' + name + scale + ".png"));
        }
    }

    /// Whether all documents have their pictures, in the list and on the screen.
    bool HasPictures()
    {
        return WaitUntil([&] {
            const auto model = Documents()->model();
            for (int row = 0; row < model->rowCount(); ++row) {
                if (model->index(row, 0).data(Host::CloudDocumentsModel::PreviewsRole).toMap().size() < 3) {
                    return false;
                }
            }
            return model->rowCount() > 0;
        });
    }

    void SettlePictures()
    {
        ASSERT_TRUE(HasPictures());
        QImage last;
        ASSERT_TRUE(WaitUntil([&] {
            const QImage now = Documents()->grab().toImage();
            return std::exchange(last, now) == now;
        }));
    }
};

TEST_F(PicturesTest, OfTheFirstStart)
{
    Open();
    Take("welcome");
}

TEST_F(PicturesTest, OfAnEmptyCloud)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Button("Upload…") && Find<QWidget>("storage"); }));
    Take("empty");
}

TEST_F(PicturesTest, OfThumbnailsAndOfTheList)
{
    PutSamples();
    OpenCloud();
    SettlePictures();
    Select({"garden-year.pdf", "ferry-ticket.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("garden-year.pdf") == 1 && StateOf("ferry-ticket.pdf") == 1; }));
    WriteFile(Local("downloads/garden-year.pdf"), PdfOfText("changed"));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("garden-year.pdf") == 2; }));
    ClickButton("Clear");
    SettlePictures();
    Take("thumbnails");
    Action("List")->trigger();
    SettlePictures();
    Take("list");
}

TEST_F(PicturesTest, OfTheDetailsAndOfTheQuickLook)
{
    PutSamples();
    OpenCloud();
    SettlePictures();
    Action("Details")->trigger();
    Select({"garden-year.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("garden-year.pdf") == 1; }));
    ClickButton("Clear");
    const auto isDrawn = [this](const QString& part) {
        const auto pictures = Find<QWidget>(part)->findChild<Window::PagePicture*>();
        return WaitUntil([&] { return pictures->IsSettled(); });
    };
    SettlePictures();
    ASSERT_TRUE(isDrawn("detailsPane"));
    Take("details");
    Action("Quick Look")->trigger();
    QTest::keyClick(Find<QWidget>("quickLook"), Qt::Key_PageDown);
    ASSERT_TRUE(isDrawn("quickLook"));
    Take("quick-look");
}

TEST_F(PicturesTest, OfTransfersAndAnError)
{
    FaultServer server;
    for (const QString& name : QDir(NORLIS_SAMPLES).entryList({"*.pdf"}, QDir::Files)) {
        server.Put(name, ReadFile(NORLIS_SAMPLES "/" + name).value_or(""));
    }
    Open();
    Type(Find<QLineEdit>("address"), server.Address().toDisplayString(QUrl::RemoveUserInfo));
    Type(Find<QLineEdit>("user"), server.User());
    Type(Find<QLineEdit>("password"), server.Password());
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return Documents() && Documents()->model()->rowCount() > 0; }));
    SettlePictures();
    server.Misbehave("PUT", IsOutOfSpace()); // the first that comes
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(4'000'000));
    QByteArray large = PdfOfColor(Qt::red);
    large.append(QByteArray(6'000'000, '\n'));
    Drop({LocalFile("failing report.pdf", PdfOfColor(Qt::blue)), LocalFile("large.pdf", large)});
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("failing report.pdf failed"); }));
    Take("transferring");
    server.SetPassword("another");
    server.Stop();
    const auto row = Transfers().indexOf("large.pdf running");
    if (row >= 0) {
        ClickButton("Cancel All");
    }
    ASSERT_TRUE(WaitUntil([&] { return !Transfers().contains("large.pdf running"); }));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Status().startsWith("Offline"); }));
    Take("offline");
}

TEST_F(PicturesTest, OfADarkWindowWithLargeLetters)
{
    const QPalette before = QApplication::palette();
    const QFont font = QApplication::font();
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(45, 45, 48));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Button, QColor(60, 60, 64));
    dark.setColor(QPalette::ButtonText, Qt::white);
    dark.setColor(QPalette::Highlight, QColor(20, 110, 190));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::ToolTipBase, QColor(70, 60, 30));
    dark.setColor(QPalette::ToolTipText, Qt::white);
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setPalette(dark);
    QApplication::setFont(large);
    PutSamples();
    OpenCloud();
    SettlePictures();
    Select({"ferry-ticket.pdf"});
    Take("dark");
    Action("Details")->trigger();
    Action("Quick Look")->trigger();
    QTest::keyClick(Find<QWidget>("quickLook"), Qt::Key_PageDown);
    Take("dark-quick-look");
    QTest::keyClick(Find<QWidget>("quickLook"), Qt::Key_Escape);
    Take("dark-details");
    EXPECT_LT(window->grab().toImage().pixelColor(5, 5).lightness(), 100);
    window.reset();
    QApplication::setPalette(before);
    QApplication::setFont(font);
}

} // namespace

} // namespace Norlis::Test

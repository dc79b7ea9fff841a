#include "Palettes.h"
#include "WindowTest.h"

#include <apps/window/pictures/PagePicture.h>
#include <NorlisTestKit/FaultServer.h>

#include <apps/window/texts/Translations.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QSet>
#include <QTest>
#include <QTranslator>

namespace Norlis::Test {

namespace {

using namespace TestKit;

/// Pictures of the window in its main states. They are stored in the folder that NORLIS_PICTURES names, to be looked
/// at: tools/window-pictures takes them in all the looks that these may be asked for by the environment.
///
/// What is done here is done by keys, which are the same in every language.
class PicturesTest : public WindowTest {
protected:
    PicturesTest()
    {
        const QString look = qEnvironmentVariable("NORLIS_LOOK");
        if (look.contains("dark")) {
            QApplication::setPalette(Dark());
        } else if (look.contains("contrast")) {
            QApplication::setPalette(HighContrast());
        }
        if (look.contains("large")) {
            QFont large = font;
            large.setPointSizeF(font.pointSizeF() * 1.5);
            QApplication::setFont(large);
        }
        if (look.contains("german")) {
            qDeleteAll(qApp->findChildren<QTranslator*>());
            Window::InstallTranslations(*qApp, QLocale(QLocale::German));
        }
        if (look.contains("mirrored")) {
            QApplication::setLayoutDirection(Qt::RightToLeft);
        }
    }

    ~PicturesTest() override
    {
        window.reset();
        QApplication::setPalette(palette);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// Documents as people have them.
    void PutSamples()
    {
        const QStringList samples = QDir(NORLIS_SAMPLES).entryList({"*.pdf"}, QDir::Files);
        ASSERT_FALSE(samples.isEmpty());
        const int count = qMax(samples.size(), qEnvironmentVariableIntValue("NORLIS_DOCUMENTS"));
        for (int number = 0; number < count; ++number) {
            const QString sample = samples[number % samples.size()];
            const QString name = number < samples.size() ? sample : QString::number(number) + ' ' + sample;
            ASSERT_TRUE(QFile::copy(NORLIS_SAMPLES "/" + sample, Cloud(name)));
            QFile copy(Cloud(name));
            ASSERT_TRUE(copy.open(QFile::ReadWrite));
            ASSERT_TRUE(copy.setFileTime(QDateTime({2026, 5, 4}, {9, 30}).addSecs(-3600LL * number),
                                         QFile::FileModificationTime));
        }
    }

    bool IsAs(const QString& name, State state) const
    {
        return StateOf(name) == static_cast<int>(state);
    }

    void Press(const QKeySequence& keys)
    {
        QWidget* const dialog = QApplication::activeModalWidget();
        QWidget* const focus = QApplication::focusWidget();
        QTest::keySequence(focus ? focus : dialog ? dialog : window.get(), keys);
    }

    /// Of the window, with what is open in front of it.
    QPixmap Picture() const
    {
        QPixmap picture = window->grab();
        QPainter painter(&picture);
        for (QWidget* const other : QApplication::topLevelWidgets()) {
            if (other->isVisible() && other != window.get()) {
                painter.drawPixmap(other->pos() - window->pos(), other->grab());
            }
        }
        return picture;
    }

    void Take(const QString& name)
    {
        QImage last;
        ASSERT_TRUE(WaitUntil([&] {
            const QImage now = Picture().toImage();
            return std::exchange(last, now) == now;
        })) << "it does not come to rest";
        EXPECT_EQ(last.size(), window->size() * qApp->devicePixelRatio());
        QSet<QRgb> colors;
        for (int y = 0; y < last.height(); y += 3) {
            for (int x = 0; x < last.width(); x += 3) {
                colors.insert(last.pixel(x, y));
            }
        }
        EXPECT_GT(colors.size(), 20) << "it is blank";
        const QString target = qEnvironmentVariable("NORLIS_PICTURES");
        if (!target.isEmpty()) {
            EXPECT_TRUE(QDir().mkpath(target));
            EXPECT_TRUE(last.save(target + '/' + name + ".png"));
        }
    }

    void OpenSized()
    {
        const QStringList size = qEnvironmentVariable("NORLIS_SIZE", "1080x700").split('x');
        window->resize(size.value(0).toInt(), size.value(1).toInt());
        QCoreApplication::processEvents();
    }

    /// Whether all documents in view have their pictures.
    bool HasPictures()
    {
        return WaitUntil([&] {
            const auto view = Documents();
            for (int row = 0; row < view->model()->rowCount(); ++row) {
                const auto index = view->model()->index(row, 0);
                if (view->viewport()->rect().intersects(view->visualRect(index)) &&
                    index.data(Host::CloudDocumentsModel::PreviewsRole).toMap().size() < 3) {
                    return false;
                }
            }
            return view->model()->rowCount() > 0;
        });
    }

    void OpenSamples()
    {
        PutSamples();
        OpenCloud();
        OpenSized();
        ASSERT_TRUE(WaitUntil([&] { return Documents()->model()->rowCount() > 0; }));
        ASSERT_TRUE(HasPictures());
        Documents()->setFocus();
    }

    const QPalette palette = QApplication::palette();
    const QFont font = QApplication::font();
};

TEST_F(PicturesTest, OfTheFirstStart)
{
    Open();
    OpenSized();
    Take("welcome");
}

TEST_F(PicturesTest, OfAnEmptyCloud)
{
    OpenCloud();
    OpenSized();
    ASSERT_TRUE(WaitUntil([&] { return Find<QWidget>("emptyPage") && Find<QWidget>("storage"); }));
    Take("empty");
}

TEST_F(PicturesTest, OfThumbnailsAndOfTheList)
{
    OpenSamples();
    Select({"garden-year.pdf", "ferry-ticket.pdf"});
    Press(QString("Ctrl+D"));
    ASSERT_TRUE(
        WaitUntil([&] { return IsAs("garden-year.pdf", State::InSync) && IsAs("ferry-ticket.pdf", State::InSync); }));
    WriteFile(Local("downloads/garden-year.pdf"), PdfOfText("changed"));
    Press(QKeySequence::Refresh);
    ASSERT_TRUE(WaitUntil([&] { return IsAs("garden-year.pdf", State::ChangedLocally); }));
    ASSERT_TRUE(HasPictures());
    ASSERT_TRUE(WaitUntil([&] { return Button("Changed 1") && !Status().contains("refreshing"); }));
    Take("thumbnails");
    Press(QString("Ctrl+2"));
    ASSERT_TRUE(HasPictures());
    Take("list");
    Press(QString("Ctrl+F"));
    QTest::keyClicks(QApplication::focusWidget(), "fer");
    Take("search");
}

TEST_F(PicturesTest, OfARemovalThatCanBeTakenBack)
{
    OpenSamples();
    Select({"garden-year.pdf"});
    Press(QKeySequence::Delete);
    ASSERT_TRUE(WaitUntil([&] { return !Message().isEmpty(); }));
    Take("removal");
}

TEST_F(PicturesTest, OfAConflict)
{
    OpenSamples();
    Select({"garden-year.pdf"});
    Press(QString("Ctrl+D"));
    ASSERT_TRUE(WaitUntil([&] { return IsAs("garden-year.pdf", State::InSync); }));
    WriteFile(Local("downloads/garden-year.pdf"), PdfOfText("mine"));
    PutIntoCloud("garden-year.pdf", PdfOfText("theirs"));
    Press(QKeySequence::Refresh);
    ASSERT_TRUE(WaitUntil([&] { return IsAs("garden-year.pdf", State::ChangedOnBothSides); }));
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    Press(QKeySequence::Save);
    ASSERT_EQ(Questions().size(), 1);
    for (const auto picture : Questions().first()->findChildren<Window::PagePicture*>()) {
        ASSERT_TRUE(WaitUntil([&] { return picture->IsSettled() || picture->isHidden(); }));
    }
    Take("conflict");
}

TEST_F(PicturesTest, OfADarkWindowWithLargeLetters)
{
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setPalette(Dark());
    QApplication::setFont(large);
    OpenSamples();
    Select({"ferry-ticket.pdf"});
    Take("dark-and-large");
    EXPECT_LT(window->grab().toImage().pixelColor(5, 5).lightness(), 100);
}

TEST_F(PicturesTest, OfTheDetailsAndOfTheQuickLook)
{
    OpenSamples();
    Press(QString("F9"));
    Select({"garden-year.pdf"});
    Press(QString("Ctrl+D"));
    ASSERT_TRUE(WaitUntil([&] { return IsAs("garden-year.pdf", State::InSync); }));
    const auto isDrawn = [this](const QString& part) {
        const auto pictures = Find<QWidget>(part)->findChild<Window::PagePicture*>();
        return WaitUntil([&] { return pictures->IsSettled(); });
    };
    ASSERT_TRUE(HasPictures());
    ASSERT_TRUE(isDrawn("detailsPane"));
    Take("details");
    Documents()->setFocus();
    Press(QString("Space"));
    QTest::keyClick(Find<QWidget>("quickLook"), Qt::Key_PageDown);
    ASSERT_TRUE(isDrawn("quickLook"));
    Take("quick-look");
}

TEST_F(PicturesTest, OfTheDialogs)
{
    OpenSamples();
    for (const char* const keys : {"Ctrl+,", "F1"}) {
        Press(QString(keys));
        ASSERT_TRUE(WaitUntil([] { return QApplication::activeModalWidget() != nullptr; })) << keys;
        Take(QApplication::activeModalWidget()->objectName());
        QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
        ASSERT_TRUE(WaitUntil([] { return QApplication::activeModalWidget() == nullptr; }));
        window->activateWindow(); // which window managers do
        ASSERT_TRUE(WaitUntil([this] { return QApplication::activeWindow() == window.get(); }));
        Documents()->setFocus();
    }
    Select({"garden-year.pdf"});
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(Documents()->viewport(), &asked);
    ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    Take("menu");
    QApplication::activePopupWidget()->close();
}

TEST_F(PicturesTest, OfTransfersAndAnError)
{
    FaultServer server;
    for (const QString& name : QDir(NORLIS_SAMPLES).entryList({"*.pdf"}, QDir::Files)) {
        server.Put(name, ReadFile(NORLIS_SAMPLES "/" + name).value_or(""));
    }
    Open();
    OpenSized();
    Type(Find<QLineEdit>("address"), server.Address().toDisplayString(QUrl::RemoveUserInfo));
    Type(Find<QLineEdit>("user"), server.User());
    Type(Find<QLineEdit>("password"), server.Password());
    QTest::keyClick(Find<QLineEdit>("password"), Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return Documents() && Documents()->model()->rowCount() > 0; }));
    ASSERT_TRUE(HasPictures());
    server.Misbehave("PUT", IsOutOfSpace()); // the first that comes
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(4'000'000));
    QByteArray large = PdfOfColor(Qt::red);
    large.append(QByteArray(6'000'000, '\n'));
    Drop({LocalFile("failing report.pdf", PdfOfColor(Qt::blue)), LocalFile("large.pdf", large)});
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("failing report.pdf failed"); }));
    Take("transferring");
}

TEST_F(PicturesTest, OfACloudThatIsAway)
{
    OpenSamples();
    ASSERT_TRUE(QDir().rename(Cloud(), Cloud() + " is away"));
    Press(QKeySequence::Refresh);
    ASSERT_TRUE(WaitUntil([&] { return Find<QWidget>("tryNow") != nullptr; }));
    Take("offline");
    ASSERT_TRUE(QDir().rename(Cloud() + " is away", Cloud()));
}

} // namespace

} // namespace Norlis::Test

#include "ServerWindowTest.h"
#include <tests/support/FileSizeLimit.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTest>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using testing::HasSubstr;
using testing::IsEmpty;

class SignInWindowTest : public ServerWindowTest {
protected:
    bool IsWelcome() const
    {
        return Find<QWidget>("welcomePage") != nullptr;
    }

    QString KeptToken()
    {
        return Host::CloudAccountSettings(Local("data")).Token(server.Address());
    }
};

TEST_F(SignInWindowTest, TheFirstStartExplainsItselfAndOffersAFolder)
{
    Open();
    ASSERT_TRUE(IsWelcome());
    EXPECT_THAT(Find<QLineEdit>("folder")->text().toStdString(), HasSubstr("Cloud Documents"));
    EXPECT_FALSE(Find<QListView>("documents"));
    Type(Find<QLineEdit>("folder"), Local("new"));
    ClickButton("Use This Folder");
    ASSERT_TRUE(WaitUntil([&] { return Find<QWidget>("emptyPage") && Action("Upload…")->isEnabled(); }));
    EXPECT_TRUE(QDir(Local("new")).exists());
    Close();
    Open();
    EXPECT_FALSE(IsWelcome());
}

TEST_F(SignInWindowTest, ServersAreSignedInToAndRemembered)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(KeptToken(), server.Password());
    Close();
    Open();
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
}

TEST_F(SignInWindowTest, AWrongPasswordIsSaidWhereItWasTypedAndNothingIsKept)
{
    Open();
    FillIn("wrong");
    QTest::keyClick(Find<QLineEdit>("password"), Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return IsWelcome() && !Message().isEmpty(); }));
    EXPECT_THAT(Message().toStdString(), HasSubstr("Signing in failed."));
    EXPECT_EQ(Find<QWidget>("message")->parentWidget(), Find<QLineEdit>("password")->parentWidget());
    EXPECT_EQ(KeptToken(), "");
    EXPECT_EQ(Find<QLineEdit>("user")->text(), server.User());
    ASSERT_TRUE(Find<QLineEdit>("password")->hasFocus()) << "what is typed next may be read by others";
    QTest::keyClicks(QApplication::focusWidget(), server.Password()); // in place of the wrong one
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(WaitUntil([&] { return !IsWelcome(); }));
    EXPECT_TRUE(WaitUntil([&] { return Documents()->hasFocus() || Find<QWidget>("emptyPage"); }));
}

TEST_F(SignInWindowTest, ReturnSignsInFromEachField)
{
    for (const char* field : {"address", "user", "password", "certificates"}) {
        Open();
        FillIn("wrong");
        QTest::keyClick(Find<QLineEdit>(field), Qt::Key_Return);
        EXPECT_TRUE(WaitUntil([&] { return IsWelcome() && !Message().isEmpty(); })) << field;
        Close();
    }
}

TEST_F(SignInWindowTest, WhatLibrariesSayIsShownToWhoeverAsksForDetails)
{
    server.Stop();
    Open();
    FillIn({});
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return IsWelcome() && !Message().isEmpty(); }));
    EXPECT_EQ(Message(), "Signing in failed. The server cannot be reached: it does not accept connections, or no "
                         "network leads there. Check the network and the address of the service, and try again.");
    EXPECT_TRUE(Find<QLineEdit>("address")->hasFocus()) << "the password is not what is wrong";
    EXPECT_FALSE(Find<QLabel>("messageDetails"));
    ClickButton("Details");
    ASSERT_TRUE(Find<QLabel>("messageDetails"));
    EXPECT_THAT(Find<QLabel>("messageDetails")->text().toStdString(), HasSubstr("connect to 127.0.0.1"));
}

TEST_F(SignInWindowTest, WithLargeLettersTheReasonOfAFailureIsInSight)
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 1.5);
    QApplication::setFont(large);
    server.Stop();
    Open();
    window->resize(900, 480);
    FillIn({});
    const auto isInSight = [](const QWidget* part) {
        return part && part->height() >= part->minimumSizeHint().height() && part->visibleRegion() == part->rect();
    };
    const auto isTold = [&] {
        return isInSight(Find<QWidget>("message")) && isInSight(Find<QLineEdit>("address")) &&
               Find<QLineEdit>("address")->hasFocus();
    };
    for (const auto attempt : {"first", "second"}) {
        QTest::keyClick(Find<QLineEdit>("address"), Qt::Key_Return);
        ASSERT_TRUE(WaitUntil([&] { return !IsWelcome() || !Find<QLineEdit>("address"); })) << attempt;
        EXPECT_TRUE(WaitUntil(isTold)) << attempt;
    }
    ClickButton("Details");
    EXPECT_TRUE(WaitUntil([&] { return Find<QLabel>("messageDetails") && isInSight(Find<QWidget>("message")); }));
    window.reset();
    QApplication::setFont(before);
}

TEST_F(SignInWindowTest, WithLargeLettersBothWaysToBeginAreInSight)
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 1.5);
    QApplication::setFont(large);
    Open();
    window->resize(1160, 24 * QFontMetrics(large).lineSpacing()); // as on a laptop
    for (const auto field : {"folder", "address", "user"}) {
        const auto part = Find<QLineEdit>(field);
        EXPECT_TRUE(WaitUntil([&] { return part->visibleRegion() == part->rect(); })) << field;
    }
    window.reset();
    QApplication::setFont(before);
}

TEST_F(SignInWindowTest, TheListHasTheKeyboardAfterTheSignIn)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    EXPECT_TRUE(Documents()->hasFocus());
}

TEST_F(SignInWindowTest, TheFirstDocumentShowsThatTheListHasTheKeyboard)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    Open();
    window->activateWindow();
    Type(Find<QLineEdit>("folder"), Cloud());
    QTest::keyClick(Find<QLineEdit>("folder"), Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return Documents() && Documents()->hasFocus(); }));
    ASSERT_TRUE(WaitUntil([&] { return Documents()->currentIndex().isValid(); }));
    EXPECT_FALSE(Documents()->selectionModel()->hasSelection());
    const auto hasFrame = [this] { // above the picture
        const QRect cell = Documents()->visualRect(Documents()->currentIndex());
        const QImage strip = Documents()->viewport()->grab({cell.topLeft(), QSize(cell.width(), 8)}).toImage();
        for (int x = 0; x < strip.width(); ++x) {
            for (int y = 0; y < strip.height(); ++y) {
                if (strip.pixelColor(x, y) != Documents()->palette().color(QPalette::Base)) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(hasFrame());
    Find<QLineEdit>("search")->setFocus();
    EXPECT_FALSE(hasFrame());
}

TEST_F(SignInWindowTest, WhatIsMissingIsWhereTheKeyboardGoes)
{
    Open();
    ClickButton("Sign In");
    EXPECT_TRUE(Find<QLineEdit>("address")->hasFocus());
    FillIn("");
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return IsWelcome() && Message().contains("No password or token was given."); }));
    EXPECT_TRUE(Find<QLineEdit>("password")->hasFocus());
    EXPECT_EQ(KeptToken(), "");
}

TEST_F(SignInWindowTest, AServerThatNeedsNoPasswordIsSignedInToWithoutOne)
{
    server.SetPassword({});
    server.Put("a.pdf", PdfOfColor(Qt::red));
    Open();
    Type(Find<QLineEdit>("address"), server.Address().toDisplayString(QUrl::RemoveUserInfo));
    ClickButton("Sign In");
    EXPECT_TRUE(Shows({"a.pdf"}));
    Close();
    Open();
    EXPECT_TRUE(WaitUntil([&] { return Action("Upload…") && Action("Upload…")->isEnabled(); }));
}

TEST_F(SignInWindowTest, AFileIsNotTakenForAFolder)
{
    Open();
    Type(Find<QLineEdit>("folder"), LocalFile("report.pdf", "content"));
    ClickButton("Use This Folder");
    EXPECT_THAT(Message().toStdString(), HasSubstr("There is a file with that name"));
    EXPECT_TRUE(IsWelcome());
}

TEST_F(SignInWindowTest, AFolderInAFolderThatDoesNotExistIsNotMade)
{
    Open();
    Type(Find<QLineEdit>("folder"), Local("mistyped/cloud"));
    ClickButton("Use This Folder");
    EXPECT_EQ(Message(), "There is no folder " + Local("mistyped") + ". Check the path, or create that folder first.");
    EXPECT_FALSE(QDir(Local("mistyped")).exists());
}

TEST_F(SignInWindowTest, WhatCannotBeAnAddressIsRefusedBeforeAnybodyIsAsked)
{
    Open();
    const QPoint place = Find<QLineEdit>("address")->mapTo(window.get(), QPoint());
    ClickButton("Sign In");
    EXPECT_THAT(Message().toStdString(), HasSubstr("Something is missing."));
    EXPECT_EQ(Find<QLineEdit>("address")->mapTo(window.get(), QPoint()), place) << "the form does not move";
    Type(Find<QLineEdit>("address"), "ftp://example.org/");
    Type(Find<QLineEdit>("password"), "x");
    ClickButton("Sign In");
    EXPECT_THAT(Message().toStdString(), HasSubstr("This address cannot be used."));
    Type(Find<QLineEdit>("folder"), "relative");
    ClickButton("Use This Folder");
    EXPECT_THAT(Message().toStdString(), HasSubstr("This is not a folder."));
    EXPECT_EQ(server.Connections(), 0);
}

TEST_F(SignInWindowTest, ASignInThatHangsCanBeCanceled)
{
    server.Misbehave(When("*").Always(), Hangs());
    Open();
    FillIn(server.Password());
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return server.Connections() > 0; }));
    ClickButton("Cancel");
    EXPECT_TRUE(IsWelcome());
    ASSERT_TRUE(Find<QLineEdit>("address"));
    EXPECT_EQ(KeptToken(), "");
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return !Find<QLineEdit>("address"); }));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(WaitUntil([&] { return Find<QLineEdit>("address"); }));
}

TEST_F(SignInWindowTest, APasswordThatIsNotTakenAnyMoreIsToldOnceAndAskedForAgain)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    server.SetPassword("another");
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return !Message().isEmpty(); }));
    EXPECT_THAT(Message().toStdString(), HasSubstr("You have been signed out."));
    EXPECT_EQ(Names(), QStringList{"a.pdf"});
    EXPECT_FALSE(Action("Upload…")->isEnabled());
    EXPECT_THAT(Questions(), IsEmpty());
    ClickButton("Sign In…");
    ASSERT_TRUE(WaitUntil([&] { return IsWelcome(); }));
    EXPECT_EQ(Find<QLineEdit>("user")->text(), server.User());
    EXPECT_EQ(Find<QLineEdit>("password")->text(), "");
    Type(Find<QLineEdit>("password"), "another");
    ClickButton("Sign In");
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(KeptToken(), "another");
}

TEST_F(SignInWindowTest, SigningOutForgetsThePassword)
{
    SignIn();
    Action("Sign Out")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return IsWelcome(); }));
    EXPECT_EQ(KeptToken(), "");
    EXPECT_EQ(Find<QLineEdit>("password")->text(), "");
    Close();
    Open();
    EXPECT_TRUE(IsWelcome());
}

TEST_F(SignInWindowTest, ARunningUploadCanBeCanceledAndLeavesNothing)
{
    SignIn();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red)), LocalFile("b.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 2; }));
    EXPECT_EQ(Transfers().size(), 2);
    EXPECT_TRUE(WaitUntil([&] { return !Action("Refresh")->isEnabled(); }));
    const auto list = Find<QListView>("transfers");
    list->setFocus();
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_TRUE(WaitUntil([&] { return Transfers().filter("canceled").size() == 1; }));
    list->clearSelection();
    ClickButton("Cancel All");
    EXPECT_TRUE(WaitUntil([&] { return Transfers().filter("canceled").size() == 2; }));
    server.BehaveAgain();
    EXPECT_TRUE(WaitUntil([&] { return server.Names().isEmpty(); }));
    EXPECT_EQ(Message(), "");
}

TEST_F(SignInWindowTest, ARunningUploadIsAskedAboutBeforeTheWindowCloses)
{
    SignIn();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 1; }));
    window->close();
    Answer("Cancel");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Transfers().size(), 1);
    window->close();
    Answer("Quit");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(SignInWindowTest, ARunningUploadIsNotAskedAboutWhenTheProgramMustEnd)
{
    server.Put("kept.pdf", PdfOfColor(Qt::blue));
    SignIn();
    ASSERT_TRUE(Shows({"kept.pdf"}));
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 1; }));
    window->close(); // the question does not keep it open either
    ASSERT_EQ(Questions().size(), 1);
    window->CloseWithoutAsking();
    EXPECT_FALSE(window->isVisible());
    window.reset();
    server.Misbehave(When("*").Always(), ClosesWithoutAnswer());
    Open();
    EXPECT_EQ(Names(), QStringList("kept.pdf")) << "the list that was saved";
}

TEST_F(SignInWindowTest, AListThatCannotBeSavedKeepsOpenNoProgramThatMustEnd)
{
    server.Put("new.pdf", PdfOfColor(Qt::blue));
    SignIn();
    ASSERT_TRUE(Shows({"new.pdf"}));
    {
        const FileSizeLimit full(0);
        window->CloseWithoutAsking();
    }
    EXPECT_FALSE(window->isVisible());
    window.reset();
    server.Misbehave(When("*").Always(), ClosesWithoutAnswer());
    Open();
    EXPECT_EQ(Names(), QStringList()) << "it could be saved";
}

TEST_F(SignInWindowTest, TheButtonAtTheEndOfATransferCancelsIt)
{
    SignIn();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    const auto list = window->findChild<QListView*>("transfers");
    ASSERT_TRUE(WaitUntil([&] { return list->isVisible() && list->model()->rowCount() == 1; }));
    const QRect row = list->visualRect(list->model()->index(0, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, {row.left() + 20, row.center().y()});
    EXPECT_EQ(Transfers().size(), 1);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, {row.right() - 20, row.center().y()});
    EXPECT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf canceled"}; }));
}

TEST_F(SignInWindowTest, AFailedUploadSaysWhyAndIsTriedAgain)
{
    SignIn();
    server.Misbehave(When("PUT").Always(), IsOutOfSpace());
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf failed"}; }));
    const auto list = Find<QListView>("transfers");
    EXPECT_NE(list->model()->index(0, 0).data(Window::Transfers::DetailRole).toString(), "");
    server.BehaveAgain();
    ClickButton("Try Again");
    EXPECT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf finished"}; }));
    EXPECT_EQ(server.Names(), QStringList{"a.pdf"});
}

TEST_F(SignInWindowTest, ClosingWhileTransfersRunAsksFirst)
{
    SignIn();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf running"}; }));
    window->close();
    EXPECT_TRUE(window->isVisible());
    Answer("Cancel");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Transfers().size(), 1);
    window->close();
    Answer("Quit");
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
}

} // namespace

} // namespace Norlis::Test

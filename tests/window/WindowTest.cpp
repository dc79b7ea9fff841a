#include "WindowTest.h"

#include <apps/window/texts/Translations.h>
#include <apps/window/widgets/PlainButtons.h>

#include <QAbstractButton>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QTranslator>
#include <QUrl>

#include <utility>

namespace Norlis::Test {

using Host::CloudDocumentsModel;

namespace {

QString Plain(QString text)
{
    return text.remove('&').remove(QChar(0x200E)); // which mirrored windows have
}

} // namespace

WindowTest::WindowTest()
{
    static const bool isStyled = (QApplication::setStyle(new Window::PlainButtons), true);
    Q_UNUSED(isStyled)
    Window::InstallTranslations(*qApp, QLocale(QLocale::English)); // the plurals
    MakeFolder(Cloud());
    QSettings(Local("data/window.ini"), QSettings::IniFormat).setValue("downloadFolder", Local("downloads"));
}

WindowTest::~WindowTest()
{
    window.reset();
    qDeleteAll(qApp->findChildren<QTranslator*>());
}

void WindowTest::Open()
{
    window = std::make_unique<Window::MainWindow>(Local("data"));
    window->Open();
    if (!std::exchange(wasOpened, true)) {
        window->resize(1100, 760); // whatever the screen: what is out of sight has no pictures
    }
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
}

void WindowTest::OpenCloud()
{
    Host::CloudAccountSettings(Local("data")).SetServiceUrl(QUrl::fromLocalFile(Cloud()));
    Open();
}

bool WindowTest::IsUpToDate(const QString& name) const
{
    return WaitUntil([&] { return StateOf(name) == static_cast<int>(State::InSync); });
}

void WindowTest::OpenWithLocalCopy()
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate("a.pdf"));
}

void WindowTest::Close()
{
    window->close();
    window.reset();
}

QString WindowTest::Local(const QString& name) const
{
    return folder.filePath(name);
}

QString WindowTest::LocalFile(const QString& name, const QByteArray& content) const
{
    WriteFile(Local(name), content);
    return Local(name);
}

QString WindowTest::Cloud(const QString& name) const
{
    return name.isEmpty() ? Local("cloud") : Local("cloud/" + name);
}

void WindowTest::PutIntoCloud(const QString& name, const QByteArray& content)
{
    WriteFile(Cloud(name), content);
}

bool WindowTest::Shows(const QStringList& names)
{
    return WaitUntil([&] { return Names() == names; });
}

void WindowTest::Refresh()
{
    ASSERT_TRUE(WaitUntil([&] { return Action("Refresh")->isEnabled(); }));
    Action("Refresh")->trigger();
}

QStringList WindowTest::Names() const
{
    QStringList names;
    const auto view = window->findChild<QListView*>("documents");
    for (int row = 0; view && row < view->model()->rowCount(); ++row) {
        names.append(view->model()->index(row, 0).data(CloudDocumentsModel::NameRole).toString());
    }
    return names;
}

int WindowTest::StateOf(const QString& name) const
{
    const auto model = Documents()->model();
    const auto found = model->match(model->index(0, 0), CloudDocumentsModel::NameRole, name, 1, Qt::MatchExactly);
    return found.isEmpty() ? -1 : found.first().data(CloudDocumentsModel::StateRole).toInt();
}

void WindowTest::Select(const QStringList& names)
{
    const auto view = Documents();
    view->clearSelection();
    for (int row = 0; row < view->model()->rowCount(); ++row) {
        const auto index = view->model()->index(row, 0);
        if (names.contains(index.data(CloudDocumentsModel::NameRole).toString())) {
            view->selectionModel()->select(index, QItemSelectionModel::Select);
            view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        }
    }
    EXPECT_EQ(view->selectionModel()->selectedIndexes().size(), names.size());
}

QAction* WindowTest::Action(const QString& text) const
{
    for (QAction* const action : window->findChildren<QAction*>()) {
        if (Plain(action->text()) == text) {
            return action;
        }
    }
    return nullptr;
}

QAbstractButton* WindowTest::Button(const QString& text) const
{
    for (QAbstractButton* const button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && (Plain(button->text()) == text || button->accessibleName() == text)) {
            return button;
        }
    }
    return nullptr;
}

void WindowTest::Click(QWidget* widget)
{
    ASSERT_TRUE(widget);
    QTest::mouseClick(widget, Qt::LeftButton);
}

void WindowTest::ClickButton(const QString& text)
{
    ASSERT_TRUE(WaitUntil([&] { return Button(text) && Button(text)->isEnabled(); })) << qPrintable(text);
    Click(Button(text));
}

void WindowTest::Type(QWidget* widget, const QString& text)
{
    ASSERT_TRUE(widget);
    if (const auto field = qobject_cast<QLineEdit*>(widget)) {
        field->clear();
    }
    QTest::keyClicks(widget, text);
}

QString WindowTest::EmptyTitle() const
{
    const auto page = Find<QWidget>("emptyPage");
    return page ? page->findChildren<QLabel*>().value(1)->text() : QString();
}

QString WindowTest::Status() const
{
    return Find<QLabel>("status")->text();
}

QString WindowTest::Message() const
{
    const auto bar = Find<QFrame>("message");
    return bar ? bar->findChild<QLabel*>("messageText")->text() : QString();
}

QList<QDialog*> WindowTest::Questions() const
{
    QList<QDialog*> open;
    for (QDialog* const dialog : window->findChildren<QDialog*>()) {
        if (dialog->isVisible()) {
            open.append(dialog);
        }
    }
    return open;
}

QString WindowTest::Question() const
{
    const auto dialog = Questions().value(0);
    const auto box = qobject_cast<QMessageBox*>(dialog);
    const auto label = dialog ? dialog->findChild<QLabel*>("question") : nullptr;
    return box ? box->text() : label ? label->text() : QString();
}

QString WindowTest::Explanation() const
{
    const auto dialog = Questions().value(0);
    const auto box = qobject_cast<QMessageBox*>(dialog);
    return box ? box->informativeText() : dialog ? dialog->accessibleDescription() : QString();
}

void WindowTest::Answer(const QString& button)
{
    ASSERT_EQ(Questions().size(), 1);
    for (QAbstractButton* const each : Questions().first()->findChildren<QAbstractButton*>()) {
        if (each->isVisible() && Plain(each->text()) == button) {
            Click(each);
            return;
        }
    }
    ADD_FAILURE() << "there is no button " << qPrintable(button);
}

void WindowTest::Drop(const QStringList& paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    data.setUrls(urls);
    const auto target = window->findChild<QWidget*>("documentsPage");
    const QPoint middle = target->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
}

QStringList WindowTest::Transfers() const
{
    QStringList rows;
    const auto view = window->findChild<QListView*>("transfers");
    for (int row = 0; view && row < view->model()->rowCount(); ++row) {
        const auto index = view->model()->index(row, 0);
        const int status = index.data(Window::Transfers::StatusRole).toInt();
        rows.append(index.data().toString() + ' ' +
                    QStringList{"running", "failed", "queued", "waiting", "canceled", "finished"}.value(status));
    }
    return rows;
}

QListView* WindowTest::Documents() const
{
    return window->findChild<QListView*>("documents");
}

} // namespace Norlis::Test

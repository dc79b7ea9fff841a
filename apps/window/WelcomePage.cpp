#include "WelcomePage.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/ServiceTexts.h>
#include <apps/window/widgets/Glyphs.h>
#include <apps/window/widgets/MessageBar.h>
#include <host/account/CloudAccount.h>
#include <host/account/ServiceAddress.h>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

#include <stdexcept>

namespace Norlis::Window {

namespace {

constexpr int linesOfAll = 33; // that the page needs with its gaps

const auto problemTopic = QStringLiteral("signIn");

QLineEdit* Field(const char* name, const QString& placeholder = {})
{
    const auto field = new QLineEdit;
    field->setObjectName(name);
    field->setPlaceholderText(placeholder);
    return field;
}

QLabel* Hint(const QString& text)
{
    const auto label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

} // namespace

WelcomePage::WelcomePage(QWidget* parent)
    : QWidget(parent),
      folder(Field("folder")),
      address(Field("address", "https://cloud.example/dav/")),
      user(Field("user")),
      password(Field("password")),
      certificates(Field("certificates", tr("Only needed for private or self-signed certificates"))),
      useFolder(new QPushButton(GlyphIcon(Glyph::Folder), tr("Use This Folder"))),
      signIn(new QPushButton(GlyphIcon(Glyph::Server), tr("Sign In"))),
      message(new MessageBar),
      folderForm(new QVBoxLayout),
      serverForm(new QVBoxLayout),
      choices(new QWidget),
      waiting(new QWidget),
      above(new QSpacerItem(0, 0)),
      scroll(new QScrollArea)
{
    setObjectName("welcomePage");
    folder->setText(QDir::toNativeSeparators(QDir::home().filePath(tr("Cloud Documents"))));
    ArrangeChoices();
    ArrangeWaiting();
    message->installEventFilter(this); // it grows with its details
    const auto centre = new QWidget;
    const auto centreLayout = new QHBoxLayout(centre);
    centreLayout->addWidget(Column());
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // all texts wrap
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(centre);
    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
}

void WelcomePage::ArrangeChoices()
{
    const auto both = new QVBoxLayout(choices);
    both->setContentsMargins(0, 0, 0, 0);
    both->addWidget(FolderChoice());
    both->addWidget(ServerChoice());
}

void WelcomePage::ArrangeWaiting()
{
    const auto cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName("cancelSignIn");
    cancel->setShortcut(Qt::Key_Escape);
    const auto busy = new QProgressBar;
    busy->setRange(0, 0);
    busy->setAccessibleName(tr("Signing in"));
    const auto layout = new QVBoxLayout(waiting);
    layout->addWidget(new QLabel(tr("Signing in…")));
    layout->addWidget(busy);
    layout->addWidget(cancel, 0, Qt::AlignRight);
    waiting->hide();
    connect(cancel, &QPushButton::clicked, this, &WelcomePage::Canceled);
}

QWidget* WelcomePage::Column()
{
    const auto title = new QLabel(tr("Where are your documents?"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.7);
    title->setFont(large);
    title->setWordWrap(true);
    const auto intro =
        Hint(tr("This program manages the PDF documents that you keep in the cloud: it uploads and downloads them and "
                "shows which ones have changed. The cloud can be any folder or a WebDAV server."));

    const auto column = new QWidget;
    column->setMaximumWidth(fontMetrics().averageCharWidth() * 90);
    const auto layout = new QVBoxLayout(column);
    layout->addSpacerItem(above); // no stretch: what is being filled in stays where it is
    layout->addWidget(title);
    layout->addWidget(intro);
    layout->addWidget(choices);
    layout->addWidget(waiting);
    layout->addStretch();
    return column;
}

QWidget* WelcomePage::FolderChoice()
{
    const auto box = new QGroupBox(tr("In a folder"));
    const auto browse = new QPushButton(tr("Choose…"));
    useFolder->setObjectName("useFolder");
    useFolder->setAutoDefault(true);
    folder->setAccessibleName(tr("Folder"));
    const auto row = new QHBoxLayout;
    row->addWidget(folder, 1);
    row->addWidget(browse);
    box->setLayout(folderForm);
    folderForm->addWidget(
        Hint(tr("This can be a folder that another program synchronizes, a folder on a network drive, or a new one. If "
                "it does not exist, it will be created.")));
    folderForm->addLayout(row);
    folderForm->addWidget(useFolder, 0, Qt::AlignRight);
    folderForm->addWidget(message);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen = QFileDialog::getExistingDirectory(this, tr("Choose a folder"), folder->text());
        if (!chosen.isEmpty()) {
            folder->setText(QDir::toNativeSeparators(chosen));
        }
    });
    connect(useFolder, &QPushButton::clicked, this, &WelcomePage::ChooseFolder);
    connect(folder, &QLineEdit::returnPressed, this, &WelcomePage::ChooseFolder);
    return box;
}

QWidget* WelcomePage::ServerChoice()
{
    const auto box = new QGroupBox(tr("On a WebDAV server"));
    signIn->setObjectName("signIn");
    signIn->setAutoDefault(true);
    password->setEchoMode(QLineEdit::Password);
    const auto browse = new QPushButton(tr("Choose…"));
    const auto certificateRow = new QHBoxLayout;
    certificateRow->addWidget(certificates, 1);
    certificateRow->addWidget(browse);
    box->setLayout(serverForm);
    const auto layout = new QFormLayout;
    serverForm->addLayout(layout);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->setRowWrapPolicy(QFormLayout::WrapLongRows);
    layout->addRow(tr("Add&ress:"), address);
    layout->addRow(tr("&User name:"), user);
    layout->addRow(tr("&Password or token:"), password);
    const auto certificateLabel = new QLabel(tr("&Certificate file:"));
    certificateLabel->setBuddy(certificates);
    layout->addRow(certificateLabel, certificateRow);
    layout->addRow(signIn);
    layout->setAlignment(signIn, Qt::AlignRight);
    browse->setAccessibleName(tr("Choose a certificate file"));
    certificates->setAccessibleName(tr("Certificate file"));
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen = QFileDialog::getOpenFileName(this, tr("Choose a certificate file"), {},
                                                            tr("Certificates (*.pem *.crt);;All files (*)"));
        if (!chosen.isEmpty()) {
            certificates->setText(chosen);
        }
    });
    connect(signIn, &QPushButton::clicked, this, &WelcomePage::ChooseServer);
    connect(address, &QLineEdit::editingFinished, this, &WelcomePage::CompleteAddress);
    for (QLineEdit* const field : {address, user, password, certificates}) {
        connect(field, &QLineEdit::returnPressed, this, &WelcomePage::ChooseServer);
    }
    return box;
}

void WelcomePage::Suggest(const QUrl& service, const Host::ServiceAccess& access)
{
    if (Host::IsFolder(service)) {
        folder->setText(QDir::toNativeSeparators(service.toLocalFile()));
        lastTried = folder;
        folder->setFocus();
        return;
    }
    lastTried = password;
    address->setText(service.toDisplayString(QUrl::RemoveUserInfo));
    user->setText(service.userName(QUrl::FullyDecoded));
    certificates->setText(access.certificateFile);
    password->setFocus();
}

void WelcomePage::SetBusy(bool isBusy)
{
    const bool wasBusy = waiting->isVisibleTo(this);
    choices->setVisible(!isBusy);
    waiting->setVisible(isBusy);
    if (isBusy) {
        message->Close(problemTopic);
    } else if (wasBusy) {
        // Whoever retries the password expects to type into its field; in another one it would be visible.
        lastTried->setFocus();
        lastTried->selectAll();
    }
}

void WelcomePage::FocusService()
{
    QLineEdit* const tried = lastTried == password ? address : lastTried;
    tried->setFocus();
    tried->selectAll();
}

void WelcomePage::ShowProblem(const QString& title, const QString& detail, const QString& technical)
{
    QVBoxLayout* const form = lastTried == folder ? folderForm : serverForm;
    if (message->parentWidget() != form->parentWidget()) {
        message->parentWidget()->layout()->removeWidget(message);
        form->addWidget(message);
    }
    message->Show(problemTopic, title, detail);
    message->SetDetails(technical);
    RevealMessage();
}

void WelcomePage::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    FitGaps();
}

void WelcomePage::FitGaps()
{
    const int line = fontMetrics().lineSpacing();
    const bool isLow = height() < linesOfAll * line;
    above->changeSize(0, isLow ? 0 : 2 * line);
    const int gap = isLow ? line / 4 : -1; // -1: as the style has it
    for (QVBoxLayout* const form : {folderForm, serverForm}) {
        form->setSpacing(gap);
        form->setContentsMargins(gap, gap, gap, gap);
    }
    for (QLayout* const outer : {choices->layout(), choices->parentWidget()->layout()}) {
        outer->setSpacing(gap);
        outer->invalidate();
    }
}

bool WelcomePage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        RevealMessage();
    }
    return QWidget::eventFilter(watched, event);
}

void WelcomePage::RevealMessage()
{
    QTimer::singleShot(0, this, [this] {
        scroll->ensureWidgetVisible(QApplication::focusWidget());
        scroll->ensureWidgetVisible(message);
    });
}

void WelcomePage::ForgetPassword()
{
    password->clear();
}

void WelcomePage::ChooseFolder()
{
    lastTried = folder;
    const QString path = QDir::fromNativeSeparators(folder->text().trimmed());
    if (path.isEmpty() || !QDir::isAbsolutePath(path)) {
        ShowProblem(tr("This is not a folder."), tr("Choose a folder, or enter its full path."));
        return;
    }
    if (QFileInfo(path).isFile()) {
        ShowProblem(tr("This is not a folder."), tr("There is a file with that name. Choose a folder."));
        return;
    }
    const QString parent = QFileInfo(path).path();
    if (!QFileInfo::exists(path) && !QFileInfo::exists(parent) &&
        parent != QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
        ShowProblem(tr("There is no folder %1.").arg(Apps::Printable(QDir::toNativeSeparators(parent))),
                    tr("Check the path, or create that folder first."));
        return;
    }
    if (!QDir().mkpath(path)) {
        ShowProblem(tr("The folder could not be created."),
                    tr("Check that you are allowed to write to its parent folder."));
        return;
    }
    emit Chosen(QUrl::fromLocalFile(QDir::cleanPath(path)), {}, {});
}

void WelcomePage::CompleteAddress()
{
    const QString text = address->text().trimmed();
    address->setText(text.isEmpty() || text.contains("://") ? text : "https://" + text);
}

void WelcomePage::ChooseServer()
{
    lastTried = password;
    CompleteAddress();
    const QString text = address->text();
    if (text.isEmpty()) {
        address->setFocus();
        ShowProblem(tr("Something is missing."), tr("Enter the address of the server."));
        return;
    }
    try {
        const QUrl service = Host::ServiceAddress(text, user->text().trimmed());
        if (Host::IsFolder(service)) {
            ShowProblem(tr("This is the address of a folder."), tr("Enter it under “In a folder” above."));
            return;
        }
        // There are servers that ask for none.
        const QString token = password->text().isEmpty() ? Host::CloudAccount::TokenForNone() : password->text();
        emit Chosen(service, token, {certificates->text().trimmed()});
    } catch (const std::invalid_argument& problem) {
        ShowProblem(tr("This address cannot be used."), InUsersLanguage(QString::fromUtf8(problem.what())) + '.');
    }
}

} // namespace Norlis::Window

#include "SettingsDialog.h"

#include <apps/common/PrintableText.h>
#include <apps/window/widgets/FolderField.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

constexpr int mostMinutes = 60;
constexpr int mostSeconds = 600;

} // namespace

SettingsDialog::SettingsDialog(const Preferences& preferences, QWidget* parent)
    : QDialog(parent),
      preferences(preferences),
      downloads(new FolderField(tr("Downloads"), {}, preferences.DownloadFolder())),
      opened(new FolderField(tr("Opened documents"), tr("A private folder that is tidied up"),
                             preferences.OpenedFolder())),
      refresh(new QSpinBox),
      uploads(new QCheckBox(tr("&Upload the changes of an opened document whenever it is saved"))),
      tells(new QCheckBox(tr("&Tell on the desktop when transfers have ended"))),
      delay(new QSpinBox),
      problem(new QLabel)
{
    setObjectName("settings");
    setWindowTitle(tr("Settings"));
    downloads->setObjectName("downloadFolder");
    opened->setObjectName("openedFolder");
    refresh->setObjectName("refreshMinutes");
    refresh->setAccessibleName(tr("Look for changes in the cloud"));
    refresh->setRange(0, mostMinutes);
    refresh->setSpecialValueText(tr("Only when asked"));
    refresh->setPrefix(tr("Every "));
    refresh->setSuffix(tr(" min"));
    refresh->setValue(static_cast<int>(preferences.RefreshInterval().count()));
    uploads->setObjectName("uploadsByItself");
    uploads->setChecked(preferences.UploadsByItself());
    tells->setObjectName("tellsOfTransfers");
    tells->setChecked(preferences.TellsOfTransfers());
    delay->setObjectName("noticeSeconds");
    delay->setAccessibleName(tr("If they took longer than"));
    delay->setRange(0, mostSeconds);
    delay->setSuffix(tr(" s"));
    delay->setValue(static_cast<int>(preferences.NoticeDelay().count()));
    delay->setEnabled(tells->isChecked());
    connect(tells, &QCheckBox::toggled, delay, &QWidget::setEnabled);
    problem->setObjectName("settingsProblem");
    problem->setTextFormat(Qt::PlainText);
    problem->setWordWrap(true);
    problem->hide();
    Arrange();
}

void SettingsDialog::Arrange()
{
    const auto form = new QFormLayout;
    const auto addRow = [form](const QString& title, QWidget* field) {
        form->addRow(title, field);
        qobject_cast<QLabel*>(form->labelForField(field))->setBuddy(field);
    };
    addRow(tr("&Downloads:"), downloads);
    addRow(tr("&Opened documents:"), opened);
    addRow(tr("&Look for changes in the cloud:"), refresh);
    form->addRow(uploads);
    form->addRow(tells);
    addRow(tr("&If they took longer than:"), delay);
    form->labelForField(delay)->setContentsMargins(tells->sizeHint().height(), 0, 0, 0); // it belongs to the box above
    const auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    const auto layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(problem);
    layout->addWidget(buttons);
}

void SettingsDialog::accept()
{
    for (FolderField* const field : {downloads, opened}) {
        const bool mayBeEmpty = field == opened;
        if ((mayBeEmpty && field->Folder().isEmpty()) || field->IsUsable()) {
            continue;
        }
        const QString folder = Apps::Printable(QDir::toNativeSeparators(field->Folder()));
        problem->setText(folder.isEmpty() ? tr("Choose a folder for downloads.")
                                          : tr("Files cannot be put into “%1”. Choose another folder.").arg(folder));
        problem->show();
        field->setFocus();
        return;
    }
    preferences.SetDownloadFolder(downloads->Folder());
    preferences.SetOpenedFolder(opened->Folder());
    preferences.SetRefreshInterval(std::chrono::minutes(refresh->value()));
    preferences.SetUploadsByItself(uploads->isChecked());
    preferences.SetTellsOfTransfers(tells->isChecked());
    preferences.SetNoticeDelay(std::chrono::seconds(delay->value()));
    QDialog::accept();
}

} // namespace Norlis::Window

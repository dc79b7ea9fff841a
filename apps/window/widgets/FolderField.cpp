#include "FolderField.h"

#include "Glyphs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

namespace Norlis::Window {

FolderField::FolderField(const QString& name, const QString& ifNone, const QString& folder, QWidget* parent)
    : QWidget(parent),
      text(new QLineEdit(QDir::toNativeSeparators(folder)))
{
    text->setAccessibleName(name);
    text->setPlaceholderText(ifNone);
    const int letter = fontMetrics().averageCharWidth();
    text->setMinimumWidth(qMax(50 * letter, fontMetrics().horizontalAdvance(ifNone) + 4 * letter));
    const auto button = new QToolButton;
    button->setIcon(GlyphIcon(Glyph::Folder));
    button->setToolTip(tr("Choose a Folder"));
    button->setAccessibleName(tr("Choose a folder: %1").arg(name));
    button->setFocusPolicy(Qt::StrongFocus);
    const auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text, 1);
    layout->addWidget(button);
    setFocusProxy(text);
    connect(button, &QAbstractButton::clicked, this, &FolderField::Choose);
}

QString FolderField::Folder() const
{
    const QString folder = QDir::fromNativeSeparators(text->text().trimmed());
    return folder.isEmpty() ? QString() : QDir::cleanPath(folder);
}

bool FolderField::IsUsable() const
{
    const QString folder = Folder();
    return QDir::isAbsolutePath(folder) && QDir().mkpath(folder) && QFileInfo(folder).isWritable();
}

void FolderField::Choose()
{
    const auto dialog = new QFileDialog(this, tr("Choose a Folder"), Folder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, text,
            [this](const QString& folder) { text->setText(QDir::toNativeSeparators(folder)); });
    dialog->open();
}

} // namespace Norlis::Window

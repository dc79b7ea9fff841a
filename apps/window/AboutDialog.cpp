#include "AboutDialog.h"

#include "ProgramOptions.h"

#include <contracts/Version.h>

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QWindow>

namespace Norlis::Window {

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName("about");
    setWindowTitle(tr("About Documents"));
    const auto icon = new QLabel;
    const int edge = fontMetrics().height() * 4;
    icon->setPixmap(QGuiApplication::windowIcon().pixmap(edge));
    const auto name = new QLabel(tr("Documents"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    name->setFont(large);
    // What the program is linked with; the names of licences are not translated.
    const QString parts =
        QStringLiteral(
            "Qt %1 — LGPL 3\nPDFium — Apache 2.0, BSD\ncurl — curl licence (MIT-like)\nOpenSSL — Apache 2.0\n"
            "SQLite — Public Domain\nglog — BSD")
            .arg(QString::fromLatin1(qVersion()));
    const auto text = new QLabel(tr("Version %1").arg(NORLIS_CLOUD_VERSION_STR) + '\n' + ProgramPurpose() + "\n\n" +
                                 tr("Made with:") + '\n' + parts);
    text->setObjectName("aboutText");
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setWordWrap(true);
    text->setMinimumWidth(fontMetrics().averageCharWidth() * 45);
    const auto words = new QVBoxLayout;
    words->addWidget(name);
    words->addWidget(text);
    const auto upper = new QHBoxLayout;
    upper->addWidget(icon, 0, Qt::AlignTop);
    upper->addSpacing(fontMetrics().height() / 2);
    upper->addLayout(words, 1);
    const auto buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    const auto layout = new QVBoxLayout(this);
    layout->addLayout(upper);
    layout->addWidget(buttons);
}

} // namespace Norlis::Window

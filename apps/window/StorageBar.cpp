#include "StorageBar.h"

#include "Texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace Norlis::Window {

StorageBar::StorageBar(QWidget* parent) : QWidget(parent), bar(new QProgressBar), text(new QLabel)
{
    setObjectName("storage");
    bar->setTextVisible(false);
    bar->setMaximum(1000);
    bar->setFixedWidth(fontMetrics().averageCharWidth() * 16);
    bar->setMaximumHeight(fontMetrics().height());
    bar->setAccessibleName(tr("Storage used"));
    const auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text);
    layout->addWidget(bar);
    hide();
}

void StorageBar::Show(int usedMiB, int totalMiB)
{
    const QString words = StorageText(usedMiB, totalMiB);
    text->setText(words);
    bar->setAccessibleDescription(words);
    bar->setVisible(usedMiB >= 0 && totalMiB > 0);
    if (totalMiB > 0) {
        bar->setValue(static_cast<int>(qBound<qint64>(0, qint64(usedMiB) * bar->maximum() / totalMiB, bar->maximum())));
    }
    setVisible(!words.isEmpty());
}

} // namespace Norlis::Window

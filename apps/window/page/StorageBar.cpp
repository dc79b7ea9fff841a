#include "StorageBar.h"

#include <apps/window/texts/Texts.h>
#include <host/session/CloudSession.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>

namespace Norlis::Window {

namespace {

constexpr int updateInterval = 1000; // milliseconds

} // namespace

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
    update.setSingleShot(true);
    update.setInterval(updateInterval);
}

void StorageBar::Follow(Host::CloudSession& session)
{
    using Host::CloudSession;
    connect(&session.Cloud(), &PDF::Cloud::AbstractCloudManager::RetrievingUserQuotaFinished, this, &StorageBar::Show);
    connect(&session, &CloudSession::DocumentUploaded, &update, qOverload<>(&QTimer::start));
    connect(&session, &CloudSession::DocumentRemoved, &update, qOverload<>(&QTimer::start));
    connect(&update, &QTimer::timeout, &session, [&session] {
        if (session.IsSignedIn()) {
            session.Cloud().UserQuota();
        }
    });
}

void StorageBar::Show(int usedMiB, int totalMiB)
{
    const QString words = StorageText(usedMiB, totalMiB);
    text->setText(words);
    bar->setAccessibleDescription(words);
    bar->setVisible(usedMiB >= 0 && totalMiB > 0);
    if (totalMiB > 0) {
        bar->setValue(
            static_cast<int>(std::clamp<qint64>(qint64(usedMiB) * bar->maximum() / totalMiB, 0, bar->maximum())));
    }
    setVisible(!words.isEmpty());
}

} // namespace Norlis::Window

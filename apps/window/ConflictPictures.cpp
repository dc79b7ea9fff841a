#include "ConflictPictures.h"

#include <host/session/CloudSession.h>

#include <QMessageBox>
#include <QPainter>
#include <QtMath>

namespace Norlis::Window {

using Host::CloudSession;

namespace {

constexpr int edge = 144; // as the thumbnails of the documents
constexpr int gap = 16;

void PaintVersion(QPainter& painter, const QRect& cell, const QPixmap& picture, const QString& caption)
{
    const QRect pictureArea(cell.topLeft(), QSize(edge, edge));
    if (!picture.isNull()) {
        QRect target(QPoint(), picture.size().scaled(pictureArea.size(), Qt::KeepAspectRatio));
        target.moveCenter(pictureArea.center());
        painter.drawPixmap(target, picture);
        painter.drawRect(target.adjusted(0, 0, -1, -1));
    }
    painter.drawText(cell, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(caption, Qt::ElideRight, cell.width()));
}

} // namespace

ConflictPictures::ConflictPictures(CloudSession& session, const QString& id, const QString& path, QMessageBox& box)
    : QObject(&box),
      box(box)
{
    connect(&session, &CloudSession::PreviewStored, this,
            [this, id](const QString& stored, const QString& size, const QString& picture) {
                if (stored == id && size == "large") {
                    inCloud = QPixmap(picture);
                    Show();
                }
            });
    Show(); // at once, so that the question does not grow under the pointer
    box.adjustSize();
    box.move(box.parentWidget()->window()->geometry().center() - box.rect().center());
    const int pixels = qCeil(edge * box.devicePixelRatioF());
    const qint64 drawing = session.DrawLocalPreview(path, {pixels, pixels});
    connect(&session, &CloudSession::PageDrawn, this, [this, drawing](qint64 drawn, const Host::DrawnPage& page) {
        if (drawn == drawing) {
            here = page.picture;
            Show();
        }
    });
    session.FetchPreviews(id);
}

void ConflictPictures::Show()
{
    const qreal ratio = box.devicePixelRatioF();
    const QSize size(2 * edge + gap, edge + 2 * box.fontMetrics().lineSpacing());
    QPixmap both(size * ratio);
    both.setDevicePixelRatio(ratio);
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setFont(box.font());
    painter.setPen(box.palette().color(QPalette::WindowText));
    const QRect first(0, 0, edge, size.height());
    const QRect second = first.translated(edge + gap, 0);
    const bool isMirrored = box.layoutDirection() == Qt::RightToLeft;
    PaintVersion(painter, isMirrored ? second : first, here, tr("Here"));
    PaintVersion(painter, isMirrored ? first : second, inCloud, tr("In the cloud"));
    painter.end();
    box.setIconPixmap(both);
}

} // namespace Norlis::Window

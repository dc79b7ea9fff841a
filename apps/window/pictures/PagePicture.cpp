#include "PagePicture.h"

#include <apps/window/widgets/Glyphs.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudFacts.h>

#include <QDateTime>
#include <QFileInfo>
#include <QPainter>
#include <QUrl>

#include <utility>

namespace Norlis::Window {

using Host::CloudSession;
using Model = Host::CloudDocumentsModel;
using Status = PDF::FileInfo::CloudStatus;

namespace {

constexpr int resizeInterval = 150; // milliseconds
constexpr qreal paperAspectRatio = 0.71;

/// In the middle of an area, on whole pixels of the screen.
QRectF Centered(const QWidget& widget, const QSizeF& size)
{
    const qreal ratio = widget.devicePixelRatioF();
    const QPointF origin = QPointF(widget.mapTo(widget.window(), QPoint())) * ratio;
    const QPointF margin = QPointF(widget.width() - size.width(), widget.height() - size.height()) / 2;
    const QPointF place = QPointF((margin * ratio + origin).toPoint()) - origin;
    return {place / ratio, size};
}

} // namespace

PagePicture::PagePicture(CloudSession& session, QWidget* parent) : QWidget(parent), session(session)
{
    setObjectName("pagePicture");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    resized.setSingleShot(true);
    connect(&resized, &QTimer::timeout, this, &PagePicture::Draw);
    connect(&session, &CloudSession::PageDrawn, this, &PagePicture::OnDrawn);
}

PagePicture::~PagePicture()
{
    session.CancelDrawing(drawing);
}

PagePicture::Subject PagePicture::SubjectOf(const QModelIndex& document, int page) const
{
    const QString id = document.data(Model::IdRole).toString();
    const QString path = document.data(Model::PathRole).toString();
    const bool isOlder = document.data(Model::StateRole).toInt() == static_cast<int>(Status::ChangedInCloud);
    Subject found = QFileInfo(path).isFile() && !isOlder ? FileSubject(path) : CloudSubject(id);
    found.id = id;
    found.page = page;
    return found;
}

PagePicture::Subject PagePicture::FileSubject(const QString& path)
{
    const QFileInfo file(path);
    return {path, file.filePath(),
            QString::number(file.size()) + '/' + QString::number(file.lastModified().toMSecsSinceEpoch())};
}

PagePicture::Subject PagePicture::CloudSubject(const QString& id) const
{
    const auto* facts = session.Facts(id);
    return {id,
            {},
            facts ? QString::fromStdString(facts->hash) + '/' + QString::number(facts->size) + '/' +
                        facts->modifiedAt.toString(Qt::ISODateWithMs)
                  : QString()};
}

QString PagePicture::ThumbnailOf(const QModelIndex& document)
{
    return document.data(Model::PreviewsRole).toMap().value("large").toUrl().toLocalFile();
}

void PagePicture::Show(const QModelIndex& document, int page)
{
    Show(SubjectOf(document, page), ThumbnailOf(document));
}

void PagePicture::ShowAsListed(const QModelIndex& document)
{
    const auto state = static_cast<Status>(document.data(Model::StateRole).toInt());
    const bool hasChanges = state == Status::ChangedLocally || state == Status::ChangedOnBothSides;
    Show(hasChanges ? CloudSubject(document.data(Model::IdRole).toString()) : SubjectOf(document, 1),
         ThumbnailOf(document));
}

void PagePicture::ShowFile(const QString& path)
{
    Show(FileSubject(path), {});
}

void PagePicture::ShowInCloud(const QString& id)
{
    Show(CloudSubject(id), {});
}

void PagePicture::Show(const Subject& next, const QString& thumbnail)
{
    const auto before = std::exchange(subject, next);
    const bool isSameDocument = subject.id == before.id;
    const bool isSameContent = isSameDocument && subject.path == before.path && subject.version == before.version;
    if (!isSameDocument || (subject.path.isEmpty() && subject.page > 1)) {
        picture = {};
    }
    if (picture.isNull() && subject.page == 1) {
        picture = QPixmap(thumbnail);
        update();
    }
    if (isSameContent && subject.page == before.page && reason.isEmpty()) {
        return;
    }
    if (!isSameContent) {
        pageCount = 0;
        reason.clear();
    }
    session.CancelDrawing(std::exchange(drawing, 0));
    resized.start(0); // when the layout has found its size
}

void PagePicture::Draw()
{
    session.CancelDrawing(std::exchange(drawing, 0));
    box = WantedBox();
    update();
    if (subject.path.isEmpty() && subject.page > 1) {
        return;
    }
    if (!subject.id.isEmpty() && isVisible() && !box.isEmpty()) {
        drawing = subject.path.isEmpty() ? session.DrawPreview(subject.id, box)
                                         : session.DrawLocalPreview(subject.path, box, subject.page);
    } else {
        box = {}; // drawn when it is seen
    }
}

void PagePicture::OnDrawn(qint64 number, const Host::DrawnPage& page)
{
    if (number != drawing) {
        return;
    }
    drawing = 0;
    reason = page.reason;
    if (!page.picture.isNull()) {
        picture = page.picture;
        picture.setDevicePixelRatio(devicePixelRatioF());
        pageCount = page.pageCount;
    } else if (subject.page > 1) {
        picture = {}; // it is of another page
    }
    update();
    emit Settled();
}

QSize PagePicture::PageSize() const
{
    return picture.size();
}

bool PagePicture::IsHere() const
{
    return !subject.path.isEmpty();
}

int PagePicture::PageCount() const
{
    return pageCount;
}

bool PagePicture::IsSettled() const
{
    return drawing == 0 && !resized.isActive() && !box.isEmpty();
}

const QString& PagePicture::Reason() const
{
    return reason;
}

QSize PagePicture::WantedBox() const
{
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

void PagePicture::PaintPlaceholder(QPainter& painter) const
{
    const QRectF paper = Centered(*this, QSizeF(paperAspectRatio, 1).scaled(size(), Qt::KeepAspectRatio));
    QColor ink = palette().color(QPalette::Text);
    ink.setAlphaF(0.25);
    painter.fillRect(paper, palette().color(QPalette::Base));
    painter.setPen(ink);
    painter.drawRect(paper.adjusted(0, 0, -1, -1));
    const qreal inset = paper.width() / 3;
    const bool isTorn = !reason.isEmpty() && (IsHere() || session.IsSignedIn());
    const Glyph glyph = isTorn                          ? Glyph::Unreadable
                        : subject.page == 1 || IsHere() ? Glyph::Document
                                                        : Glyph::Cloud; // where it still is
    PaintGlyph(painter, paper.adjusted(inset, inset, -inset, -inset), glyph, ink);
}

void PagePicture::paintEvent(QPaintEvent*)
{
    if (subject.id.isEmpty()) {
        return;
    }
    if (box != WantedBox() && !resized.isActive()) {
        resized.start(box.isEmpty() ? 0 : resizeInterval);
    }
    QPainter painter(this);
    if (picture.isNull()) {
        PaintPlaceholder(painter);
        return;
    }
    // One that was drawn for this size has its pixels on those of the screen.
    const QSizeF own = QSizeF(picture.size()) / picture.devicePixelRatio();
    const bool isForThis = IsSettled() && box == WantedBox() && reason.isEmpty();
    const QRectF target = Centered(*this, isForThis ? own : own.scaled(size(), Qt::KeepAspectRatio));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, picture, picture.rect());
    QColor rim = palette().color(QPalette::Text);
    rim.setAlphaF(0.25);
    painter.setPen(QPen(rim, 0)); // one pixel of the screen
    const qreal pixel = 1 / devicePixelRatioF();
    painter.drawRect(target.adjusted(0, 0, -pixel, -pixel));
}

} // namespace Norlis::Window

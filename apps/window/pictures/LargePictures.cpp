#include "LargePictures.h"

#include <host/session/CloudSession.h>

#include <QSize>

namespace Norlis::Window {

using Host::CloudSession;

namespace {

constexpr int limit = 24 * 1024; // KiB
constexpr int maxRunning = 2;

// Edges in pixels. Between the steps a picture is good enough, and is not drawn anew for each size of thumbnails.
constexpr int edgeOfPreviews = 191;
constexpr int mediumEdge = 320;
constexpr int largestEdge = 640;

int CostOf(const QPixmap& picture)
{
    constexpr int bytesOfPixel = 4;
    return 1 + picture.width() * picture.height() * bytesOfPixel / 1024;
}

} // namespace

LargePictures::LargePictures(CloudSession& session, QObject* parent)
    : QObject(parent),
      session(session),
      pictures(limit)
{
    connect(&session, &CloudSession::PageDrawn, this, &LargePictures::OnDrawn);
    connect(&session, &CloudSession::ListRefreshed, this, [this](const auto&, const QStringList& changed) {
        failed.clear(); // it may have been the network
        for (const QString& id : changed) {
            Forget(id);
        }
        Begin();
    });
}

void LargePictures::Show(const QStringList& ids, int newEdge)
{
    const int before = edge;
    edge = newEdge <= edgeOfPreviews ? 0 : newEdge <= mediumEdge ? mediumEdge : largestEdge;
    shown = edge == 0 ? QStringList() : ids;
    if (edge != before) {
        failed.clear();
    }
    const QSet<QString> areShown(shown.begin(), shown.end());
    failed.intersect(areShown);
    const auto drawn = running;
    for (const QString& id : drawn) {
        if (edge != before || !areShown.contains(id)) {
            Cancel(id);
        }
    }
    Begin();
}

QPixmap LargePictures::Find(const QString& id) const
{
    const auto known = edge > 0 ? pictures.object(id) : nullptr;
    return known ? known->pixmap : QPixmap();
}

void LargePictures::Forget(const QString& id)
{
    pictures.remove(id);
    failed.remove(id);
    Cancel(id);
    Begin();
}

void LargePictures::Begin()
{
    const auto drawn = running.values();
    for (const QString& id : qAsConst(shown)) {
        if (running.size() >= maxRunning) {
            return;
        }
        const auto known = pictures.object(id);
        if ((!known || known->edge < edge) && !failed.contains(id) && !drawn.contains(id)) {
            running.insert(session.DrawPreview(id, {edge, edge}), id);
        }
    }
}

void LargePictures::Cancel(const QString& id)
{
    for (auto each = running.begin(); each != running.end();) {
        if (*each == id) {
            session.CancelDrawing(each.key());
            each = running.erase(each);
        } else {
            ++each;
        }
    }
}

void LargePictures::OnDrawn(qint64 drawing, const Host::DrawnPage& page)
{
    const QString id = running.take(drawing);
    if (id.isEmpty()) { // somebody else's
        return;
    }
    if (page.picture.isNull()) {
        failed.insert(id);
    } else {
        pictures.insert(id, new Picture{page.picture, edge}, CostOf(page.picture));
    }
    Begin();
    emit Drawn(id);
}

} // namespace Norlis::Window

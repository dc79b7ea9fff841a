#include "SessionDrawings.h"

#include "Later.h"

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Host {

using Social::NorlisCloudProtocol;
using Social::RequestResult;

namespace {

constexpr qint64 notStarted = -1;

} // namespace

SessionDrawings::SessionDrawings(const SessionContext& context) : context(context) {}

qint64 SessionDrawings::DrawDocument(const QString& id, const QSize& box)
{
    const QMap<QString, QString> fields = {
        {NorlisCloudProtocol::ID, id},
        {NorlisCloudProtocol::FILE_PREVIEW_WIDTH, QString::number(box.width())},
        {NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, QString::number(box.height())},
    };
    return Begin([&](const Done& done) {
        return context.cloud.Protocol().retrievePreview(
            fields, [done](qint64, RequestResult result, const QPixmap& picture) { done(result, picture, 0); });
    });
}

qint64 SessionDrawings::DrawFile(const QString& path, const QSize& box, int page)
{
    return Begin([&](const Done& done) {
        return context.cloud.PreviewLocalFile(path, page, box,
                                              [done](qint64, RequestResult result, const QPixmap& picture,
                                                     int pageCount) { done(result, picture, pageCount); });
    });
}

qint64 SessionDrawings::Begin(const std::function<qint64(Done done)>& start)
{
    const qint64 drawing = ++last;
    const auto end = [this, drawing](const DrawnPage& page) {
        if (running.remove(drawing) != 0) {
            emit context.session.PageDrawn(drawing, page);
        }
    };
    const qint64 operation =
        start([this, guard = lifetime.Watch(), end](RequestResult result, const QPixmap& picture, int pageCount) {
            if (guard) {
                const QString reason = result == Social::Error ? context.cloud.Failures().Take().reason : QString();
                end({picture, pageCount, reason});
            }
        });
    running.insert(drawing, operation);
    if (operation == notStarted) {
        Later(this, [end, reason = context.cloud.Failures().Take().reason] { end({{}, 0, reason}); });
    }
    return drawing;
}

void SessionDrawings::Cancel(qint64 drawing)
{
    const auto found = running.constFind(drawing);
    if (found == running.constEnd()) {
        return;
    }
    const qint64 operation = *found;
    running.erase(found);
    if (operation != notStarted) {
        context.cloud.Protocol().cancelOperation(operation);
    }
}

} // namespace Norlis::Host

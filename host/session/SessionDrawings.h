#pragma once

#include "SessionContext.h"

#include <base/Lifetime.h>

#include <QHash>

#include <functional>

namespace Norlis::Host {

/// Draws single pages for whoever shows them. They do not come into the list.
class SessionDrawings : public QObject {
public:
    explicit SessionDrawings(const SessionContext& context);

    // See CloudSession.

    qint64 DrawDocument(const QString& id, const QSize& box);
    qint64 DrawFile(const QString& path, const QSize& box, int page);
    void Cancel(qint64 drawing);

private:
    using Done = std::function<void(Social::RequestResult result, const QPixmap& picture, int pageCount)>;

    /// \param start sends the request to the protocol, and returns its id
    qint64 Begin(const std::function<qint64(Done done)>& start);

    const SessionContext context;
    QHash<qint64, qint64> running; ///< ids of the protocol's operations, by drawing
    qint64 last = 0;               ///< drawing
    Lifetime lifetime;
};

} // namespace Norlis::Host

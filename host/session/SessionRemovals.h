#pragma once

#include "SessionContext.h"

namespace Norlis::Host {

/// The session's removals of documents from the cloud. Each ends in DocumentRemoved or Failed.
class SessionRemovals : public QObject {
public:
    explicit SessionRemovals(const SessionContext& context);

    void Start(const QString& id);

private:
    using Record = std::shared_ptr<PDF::FileInfo>;

    void Request(const QString& id);

    void OnFinished(const Record& record);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, const QString& message);

    const SessionContext context;

    /// The records whose removal was requested. The cloud manager also removes, without being asked, what a failed
    /// upload may have left behind; nobody wants to hear of that.
    QHash<const PDF::FileInfo*, Record> requested;
    Lifetime lifetime;
};

} // namespace Norlis::Host

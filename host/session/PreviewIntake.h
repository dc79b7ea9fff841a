#pragma once

#include "SessionContext.h"

#include <QVector>

namespace Norlis::Host {

/// Puts pictures that arrive into the file list, one document after the other.
///
/// Every files list asks for three pictures of every document again. Those that show the content which the list shows
/// already are dropped, so that a periodic refresh does not repaint everything.
class PreviewIntake {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    explicit PreviewIntake(SessionContext& context);

    /// Fetches the three pictures of a document for somebody who waits for the outcome.
    void Fetch(const QString& id);

    bool HasWork() const;

    /// Deals with one document. Emits, so the session may be gone afterwards.
    void Step();

private:
    struct Picture {
        Record record; ///< as the request knew it
        Size size;
        bool wasAskedFor;
    };
    using Pictures = QVector<Picture>;

    void Fetch(const QString& id, Size size, int edge);
    void Show(const QString& id, const Pictures& pictures);
    bool IsNews(const KnownDocument& document, const Picture& picture) const;
    void Fail(const QString& id, const QString& message, const Social::OAuth2::Failure& cause);

    void OnFinished(const Record& record, Size size);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& record);

    SessionContext& context;
    QHash<const PDF::FileInfo*, Record> wanted; ///< one record for each request that somebody waits for
    QQueue<QString> waiting;
    QHash<QString, Pictures> arrived;
};

} // namespace Norlis::Host

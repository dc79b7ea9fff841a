#pragma once

#include "SessionContext.h"

#include <QQueue>
#include <QVector>

#include <functional>

namespace Norlis::Host {

/// Puts previews that arrive into the file list, one document after the other.
///
/// Every files list asks for three previews of every document again. Those that show the content which the list shows
/// already are dropped, so that a periodic refresh does not repaint everything.
///
/// Whoever owns it calls Step from the event loop for as long as HasWork.
class SessionPreviews : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    /// \param onWork called when there is something to do from now on
    SessionPreviews(const SessionContext& context, std::function<void()> onWork);

    /// Fetches the three previews of a document for somebody who waits for the outcome.
    void Fetch(const QString& id);

    bool HasWork() const;

    /// Deals with one document. Emits, so the session may be gone afterwards.
    void Step();

private:
    struct Preview {
        Record record; ///< as the request knew it
        Size size;
        bool wasAskedFor;
    };
    using Previews = QVector<Preview>;

    void Fetch(const QString& id, Size size, int edge);
    void PutIntoList(const QString& id, const Previews& previews);
    static bool IsNew(const DocumentIndex::Entry& document, const Preview& preview);

    void OnFinished(const Record& record, Size size);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, Size size, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& record);

    const SessionContext context;
    const std::function<void()> onWork;
    QHash<const PDF::FileInfo*, Record> wanted; ///< one record for each request that somebody waits for
    QQueue<QString> waiting;
    QHash<QString, Previews> arrived;
    Lifetime lifetime;
};

} // namespace Norlis::Host

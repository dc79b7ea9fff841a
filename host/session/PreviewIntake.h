#pragma once

#include "SessionContext.h"

#include <QQueue>
#include <QVector>

#include <functional>

namespace Norlis::Host {

/// Puts pictures that arrive into the file list, one document after the other.
///
/// Every files list asks for three pictures of every document again. Those that show the content which the list shows
/// already are dropped, so that a periodic refresh does not repaint everything.
///
/// Whoever owns it calls Step from the event loop for as long as HasWork.
class PreviewIntake : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    /// \param onWork called when there is something to do from now on
    PreviewIntake(const SessionContext& context, std::function<void()> onWork);

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
    static bool IsNew(const DocumentIndex::Entry& document, const Picture& picture);

    void OnFinished(const Record& record, Size size);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, Size size, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& record);

    const SessionContext context;
    const std::function<void()> onWork;
    QHash<const PDF::FileInfo*, Record> wanted; ///< one record for each request that somebody waits for
    QQueue<QString> waiting;
    QHash<QString, Pictures> arrived;
    Lifetime lifetime;
};

} // namespace Norlis::Host

#pragma once

#include "SessionContext.h"

#include <QQueue>
#include <QSet>
#include <QVector>

#include <functional>

namespace Norlis::Host {

/// Fetches the previews of the documents that a view shows, and puts what arrives into the file list, one document
/// after the other.
///
/// A preview that is on disk is not fetched again, nor one that could not be fetched for as long as its document stays
/// in view.
///
/// Whoever owns it calls Step from the event loop for as long as HasWork.
class SessionPreviews : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    /// \param onWork called when there is something to do from now on
    SessionPreviews(const SessionContext& context, std::function<void()> onWork);

    /// See CloudSession::ShowPreviews.
    void Show(const QStringList& ids);

    /// Fetches the three previews of a document for somebody who waits for the outcome.
    void Fetch(const QString& id);

    bool HasWork() const;

    /// Deals with one document. Emits, so the session may be gone afterwards.
    void Step();

private:
    struct Preview {
        Size size;
        bool wasAskedFor; ///< by Fetch
    };
    using Previews = QVector<Preview>;

    struct Running {
        Record record;
        QString id;
        Size size;
    };

    void Fetch(const QString& id, Size size, int edge);

    void SendSoon();

    /// Sends requests for what is shown, as many as may run at once. Emits.
    void Send();

    struct Wish {
        QString id; ///< empty when there is nothing to fetch
        QVector<Size> sizes;
    };

    /// What is to be fetched next, of one document and together, so that the service reads it once.
    Wish Next() const;

    /// Those of the sizes that are neither there nor under way.
    QVector<Size> Missing(const QString& id, const QVector<Size>& sizes) const;
    bool IsRunning(const QString& id, Size size) const;

    /// Has Step put previews into the list that are on disk.
    void EnqueueStored(const QString& id);
    void Enqueue(const QString& id, const Preview& preview);
    void PutIntoList(const QString& id, const Previews& previews);
    static bool IsNew(const DocumentIndex::Entry& document, const Preview& preview);

    void OnFinished(const Record& record, Size size);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, Size size, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& record);

    /// \return whether this is the first failure about a document that is shown
    bool OnFailed(const PDF::FileInfo* record, bool isLasting);

    const SessionContext context;
    const std::function<void()> onWork;
    QHash<const PDF::FileInfo*, Record> wanted; ///< one record for each request that somebody waits for

    QStringList shown;                            ///< the latest first
    QHash<QString, bool> failed;                  ///< of those that are shown; whether another attempt is useless
    QHash<const PDF::FileInfo*, Running> running; ///< requests for what is or was shown
    bool isSendingSoon = false;
    bool wasAway = false;

    QQueue<QString> waiting; ///< for Step
    QHash<QString, Previews> arrived;
    Lifetime lifetime;
};

} // namespace Norlis::Host

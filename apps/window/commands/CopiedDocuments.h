#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

class QMimeData;

namespace Norlis::Host {
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class Transfers;

/// Paths of the local files that are dropped or pasted.
QStringList LocalPaths(const QMimeData* data);

/// Puts the local copies of documents onto the clipboard, fetching those that are not on this computer.
class CopiedDocuments : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    CopiedDocuments(Host::CloudSession& session, Transfers& transfers);

    /// Replaces the copying that is under way.
    /// \param present paths of local copies; \param absent ids of documents that have none
    void Copy(const QStringList& present, const QSet<QString>& absent);

private:
    void Drop(const QString& id);
    void PutWhenComplete();

    Host::CloudSession& session;
    Transfers& transfers;
    QStringList paths;
    QSet<QString> fetched; ///< ids of what has not arrived
};

} // namespace Norlis::Window

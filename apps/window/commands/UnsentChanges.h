#pragma once

#include <apps/window/settings/Preferences.h>

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

namespace Norlis::Host {
class CloudDocumentsModel;
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class MessageBar;
class Transfers;

/// Tells the user of documents with changes that are not in the cloud, and of changed files whose document is gone, and
/// offers to upload them; what was opened and is saved is uploaded at once, if the user prefers that. What the user has
/// closed is told again when there is another change.
class UnsentChanges : public QObject {
    Q_OBJECT

public:
    UnsentChanges(Host::CloudSession& session, const Host::CloudDocumentsModel& model, const Transfers& transfers,
                  MessageBar& message, const Preferences& preferences);

    /// Of documents.
    int Count() const;

    /// Tells of changes anew, of which the user knows.
    void Remind();

signals:
    /// A document was saved, and the user wants changes to be uploaded then.
    void UploadDue(const QString& id);
    void UploadChosen(const QStringList& ids);
    void UploadAsNewChosen(const QStringList& paths);

private:
    struct Changes {
        QStringList ids;
        int conflicts = 0; ///< how many of them have changed in the cloud too
    };

    /// Without those that are being transferred.
    Changes Find() const;
    void OnSaved(const QString& id);
    void Tell();
    void OnCopyLeft(const QString& path);
    void OnUploaded(const QString& path);
    void TellOfCopiesLeft();

    Host::CloudSession& session;
    const Host::CloudDocumentsModel& model;
    const Transfers& transfers;
    MessageBar& message;
    const Preferences preferences;
    QTimer update;      ///< combines many changes into one message
    QSet<QString> told; ///< ids of the documents of which the user knows
    QStringList left;   ///< paths of files whose documents are gone
};

} // namespace Norlis::Window

#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

class QWidget;

namespace Norlis::Host {
class CloudDocumentsModel;
class CloudSession;
struct CloudProblem;
} // namespace Norlis::Host

namespace Norlis::Window {

class Transfers;

/// Sends the changes that were made to local copies, and asks what is to become of them where the document was changed
/// in the cloud, too, or is fetched again.
class ChangesCommands : public QObject {
    Q_OBJECT

public:
    /// What the commands need; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        const Host::CloudDocumentsModel& model;
        Transfers& transfers;
    };

    /// \param widget parent of the dialogs
    ChangesCommands(const Parts& parts, QWidget& widget);

    /// Asks about those that were changed in the cloud.
    void Upload(const QStringList& ids);

    /// As the user wants it done whenever something is saved: does not ask, since other work would be interrupted.
    void UploadUnasked(const QString& id);

    /// Gives the changes up, after a question.
    void GiveUp(const QStringList& ids);

    /// Asks about the changes of documents that were to be downloaded in the place of their copies.
    void AskBeforeDownload(const QStringList& ids);

signals:
    /// The user was asked about changes and has left them as they are.
    void LeftAlone();

private:
    /// What to do about a document that was changed both here and in the cloud, as numbers of the choices.
    enum Resolution { KeepBoth, UseMine, UseCloud };

    void AskAboutConflicts(const QStringList& ids);
    void AskAboutChanges(const QStringList& ids);
    int StateOf(const QString& id) const;
    QString PathOf(const QString& id) const;
    void OnFailed(const Host::CloudProblem& problem);
    void OnListRefreshed();

    const Parts parts;
    QWidget& widget;
    QSet<QString> unasked;  ///< ids of what is uploaded so
    QStringList conflicted; ///< paths of uploads that met another version; asked about when the list is there
};

} // namespace Norlis::Window

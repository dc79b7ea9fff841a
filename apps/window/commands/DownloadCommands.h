#pragma once

#include <apps/window/settings/Preferences.h>

#include <QObject>
#include <QStringList>
#include <QVector>

class QWidget;

namespace Norlis::Host {
class CloudDocumentsModel;
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class MessageBar;
class Transfers;

/// Downloads documents to the user's folders, and asks where something is in the way.
class DownloadCommands : public QObject {
    Q_OBJECT

public:
    /// What the commands need; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        Preferences preferences;
        const Host::CloudDocumentsModel& model;
        Transfers& transfers;
        MessageBar& message;
    };

    /// \param widget parent of the dialogs
    DownloadCommands(const Parts& parts, QWidget& widget);

    /// \param folder if empty, that of the local copy or else the downloads folder
    void Download(const QStringList& ids, const QString& folder = {});

    /// To a folder that the user chooses.
    void ChooseFolder(const QStringList& ids);

signals:
    /// The local copies that were to be replaced have changes.
    void ChangesMet(const QStringList& ids);

private:
    /// A document in whose place something else is.
    struct Obstructed {
        QString id;
        QString path; ///< of what is there
    };

    QString FolderFor(const QString& id) const;
    void AskAboutTakenNames(const QVector<Obstructed>& documents);
    void Replace(const QString& id, const QString& path);

    Parts parts;
    QWidget& widget;
};

} // namespace Norlis::Window

#pragma once

#include <QObject>
#include <QStringList>

class QSettings;
class QWidget;

namespace Norlis::Host {
class CloudDocumentsModel;
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class DocumentsView;
class MessageBar;
class Transfers;

/// Carries out what the user chooses to do with documents, and asks before anything would be lost.
class DocumentCommands : public QObject {
    Q_OBJECT

public:
    /// What the commands need; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        QSettings& settings;
        const Host::CloudDocumentsModel& model;
        const DocumentsView& view;
        Transfers& transfers;
        MessageBar& message;
    };

    /// \param widget parent of the dialogs
    DocumentCommands(const Parts& parts, QWidget& widget);

    /// Uploads PDF files. Local copies of documents replace those documents; all others become new documents.
    void Upload(const QStringList& paths);
    void ChooseUploads();

    // These act on the selected documents.

    /// \param folder if empty, that of the local copy or else the downloads folder
    void Download(const QString& folder = {});
    void ChooseDownloadFolder();
    void Open();
    void UploadChanges();
    void Remove();

    /// Ids of the selected documents whose local copies have changed.
    QStringList ChangedHere() const;

    /// The id itself if the list has no such document.
    QString NameOf(const QString& id) const;

private:
    void OpenFile(const QString& path);
    void ReplaceInCloud(const QStringList& ids);
    QString DownloadFolder() const;
    QStringList NamesOf(const QStringList& ids) const;

    /// Of the cloud copies, as the list shows them now.
    QStringList VersionsOf(const QStringList& ids) const;

    const Parts parts;
    QWidget& widget;
};

} // namespace Norlis::Window

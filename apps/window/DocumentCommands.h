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

/// Does with documents what the user chooses, and asks before anything is lost by it.
class DocumentCommands : public QObject {
    Q_OBJECT

public:
    /// What the commands work with; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        QSettings& settings;
        const Host::CloudDocumentsModel& model;
        const DocumentsView& view;
        Transfers& transfers;
        MessageBar& message;
    };

    /// \param widget over which questions are asked
    DocumentCommands(const Parts& parts, QWidget& widget);

    /// Sends PDF files. Those that are local copies of documents replace these, all others become new documents.
    void Upload(const QStringList& paths);
    void ChooseUploads();

    // With the selected documents.

    /// \param folder empty: where the local copy is, or else the folder for downloads
    void Download(const QString& folder = {});
    void ChooseDownloadFolder();
    void Open();
    void UploadChanges();
    void Remove();

    /// Ids of those selected documents whose local copy has changed.
    QStringList ChangedHere() const;

    /// The id itself when there is no such document in the list.
    QString NameOf(const QString& id) const;

private:
    void OpenFile(const QString& path);
    void ReplaceInCloud(const QStringList& ids);
    QString DownloadFolder() const;
    QStringList NamesOf(const QStringList& ids) const;

    const Parts parts;
    QWidget& widget;
};

} // namespace Norlis::Window

#pragma once

#include "ChangesCommands.h"
#include "CopiedDocuments.h"
#include "DownloadCommands.h"
#include "RemovalUndo.h"
#include "UnsentChanges.h"
#include "UploadCommands.h"

#include <apps/window/settings/Preferences.h>
#include <contracts/FileInfo.h>

#include <QHash>
#include <QObject>
#include <QStringList>

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
    static constexpr int maxOpened = 10; ///< documents without a question

    /// What the commands need; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        Preferences preferences;
        const Host::CloudDocumentsModel& model;
        const DocumentsView& view;
        Transfers& transfers;
        MessageBar& message;
    };

    /// \param widget parent of the dialogs
    DocumentCommands(const Parts& parts, QWidget& widget);
    ~DocumentCommands() override;

    UploadCommands& Uploads();

    // These act on the selected documents.

    void Download();
    void ChooseDownloadFolder();
    void Open();
    void ShowInFolder();
    void UploadChanges();
    void ResolveConflicts();

    /// After a question.
    void UseCloud();
    void Copy();
    void Remove();

    void Open(const QStringList& ids);

    /// Fetches a document to be looked at here.
    void Fetch(const QString& id);

    RemovalUndo& Removals();

    /// Whether the local copy of a selected document is there.
    bool IsAnyHere() const;

    /// Ids of the selected documents whose local copies have changed.
    QStringList ChangedHere() const;

    /// How many documents have changes that are not in the cloud.
    int CountOfChanges() const;

    /// Ids of the selected documents that have changed on both sides.
    QStringList InConflict() const;

private:
    QStringList SelectedIn(std::initializer_list<PDF::FileInfo::CloudStatus> states) const;

    /// At once for the view, with Undo.
    void RemoveLater(const QStringList& ids);

    /// Messages go that are about what has been mended since.
    void ForgetOldMessages();
    void OpenFile(const QString& path);

    /// See Transfers::DecisionNeeded.
    void Decide(const QString& id, const QString& file, const QString& folder);
    void OnFetched(const QString& path);

    /// Where a document comes that is only to be looked at: not among the user's own files, unless it is there or
    /// the user wants it.
    QString FolderToView(const QString& id, const QString& path) const;
    QStringList NamesOf(const QStringList& ids) const;

    /// Keeps the content of a local copy that is about to be replaced; not if it is on another file system.
    void KeepOlder(const QString& id, const QString& path);

    Parts parts;
    QWidget& widget;
    RemovalUndo removals;
    CopiedDocuments copied;
    UnsentChanges unsent;
    ChangesCommands changes;
    DownloadCommands downloads;
    UploadCommands uploads;
    QHash<QString, QString> older; ///< where what is about to be replaced is, by path of the local copy
    QStringList offered;           ///< such files that can be opened; deleted at the end
};

} // namespace Norlis::Window

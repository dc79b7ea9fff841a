#pragma once

#include "PdfSearch.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QWidget;

namespace Norlis::Host {
class CloudDocumentsModel;
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class MessageBar;
class Transfers;

/// Uploads files that the user chooses, drops, pastes or names to another program, and asks where that is needed.
class UploadCommands : public QObject {
    Q_OBJECT

public:
    /// What the commands need; all of it outlives them.
    struct Parts {
        Host::CloudSession& session;
        const Host::CloudDocumentsModel& model;
        Transfers& transfers;
        MessageBar& message;
    };

    /// \param widget parent of the dialogs
    UploadCommands(const Parts& parts, QWidget& widget);

    /// Uploads PDF files, and those in folders. Local copies of documents are to replace those documents; all others
    /// become new documents.
    void Upload(const QStringList& paths);
    void Choose();
    void Paste();

    /// Uploads them if the user agrees, together with those about which the question is open.
    void Offer(const QStringList& paths);

    /// Whatever documents they are copies of.
    void UploadNew(const QStringList& paths);

signals:
    /// By Upload: the local copies of these documents are to be uploaded.
    void ReplacementChosen(const QStringList& ids);

private:
    void OnFound(const QStringList& paths);

    const Parts parts;
    QWidget& widget;
    PdfSearch search;
    QString folder;                 ///< where files were chosen last
    QPointer<QMessageBox> question; ///< while it is open
    QStringList asked;              ///< paths that it is about
};

} // namespace Norlis::Window

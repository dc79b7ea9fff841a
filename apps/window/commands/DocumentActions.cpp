#include "DocumentActions.h"

#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/Glyphs.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace Norlis::Window {

namespace {

QAction* Make(QWidget& widget, const QString& text, Glyph glyph, const QKeySequence& keys, const QString& tip)
{
    const auto action = new QAction(GlyphIcon(glyph), text, &widget);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    const QString shortcut = keys.toString(QKeySequence::NativeText);
    action->setToolTip(shortcut.isEmpty() ? tip : tip + " (" + shortcut + ')');
    widget.addAction(action);
    return action;
}

QMenu* MakeMenu(QWidget& widget, const QString& title)
{
    return new QMenu(title, &widget);
}

} // namespace

DocumentActions::DocumentActions(QWidget& widget)
    : upload(Make(widget, tr("&Upload…"), Glyph::Upload, QString("Ctrl+U"), tr("Upload PDF files to the cloud"))),
      download(Make(widget, tr("&Download"), Glyph::Download, QString("Ctrl+D"),
                    tr("Download the selected documents to the downloads folder"))),
      downloadTo(Make(widget, tr("Download &To…"), Glyph::Folder, QString("Ctrl+Shift+D"),
                      tr("Download the selected documents to a folder of your choice"))),
      open(Make(widget, tr("&Open"), Glyph::Open, QKeySequence::Open,
                tr("Open the selected documents, downloading them first if necessary"))),
      showInFolder(Make(widget, tr("Sho&w in Folder"), Glyph::Folder, QString("Ctrl+Shift+O"),
                        tr("Show the copies on this computer in the file manager"))),
      uploadChanges(Make(widget, tr("Upload &Changes"), Glyph::UploadChanges, QKeySequence::Save,
                         tr("Update the documents in the cloud with the changes you made on this computer"))),
      resolve(Make(widget, tr("Resolve Con&flict…"), Glyph::UploadChanges, {},
                   tr("Choose what becomes of documents that were changed both here and in the cloud"))),
      useCloud(Make(widget, tr("Use the Cloud’s &Version…"), Glyph::ChangedInCloud, QString("Ctrl+Shift+R"),
                    tr("Give up the changes you made on this computer"))),
      copy(Make(widget, tr("Cop&y"), Glyph::Copy, QKeySequence::Copy,
                tr("Copy the selected documents to the clipboard, downloading them first if necessary"))),
      paste(Make(widget, tr("&Paste"), Glyph::Paste, QKeySequence::Paste, tr("Upload the PDF files on the clipboard"))),
      remove(Make(widget, tr("&Remove"), Glyph::Remove, QKeySequence::Delete,
                  tr("Remove the selected documents from the cloud"))),
      undoRemoval(
          Make(widget, tr("U&ndo Removal"), Glyph::Refresh, QKeySequence::Undo, tr("Take back the last removal"))),
      refresh(Make(widget, tr("&Refresh"), Glyph::Refresh, QKeySequence::Refresh, tr("Reload the list of documents"))),
      thumbnails(
          Make(widget, tr("&Thumbnails"), Glyph::Thumbnails, QString("Ctrl+1"), tr("Show documents as thumbnails"))),
      list(Make(widget, tr("&List"), Glyph::List, QString("Ctrl+2"), tr("Show documents as a list"))),
      zoomIn(Make(widget, tr("Zoom &In"), Glyph::ZoomIn, QKeySequence::ZoomIn, tr("Show larger thumbnails"))),
      zoomOut(Make(widget, tr("Zoom &Out"), Glyph::ZoomOut, QKeySequence::ZoomOut, tr("Show smaller thumbnails"))),
      usualSize(Make(widget, tr("&Usual Size"), Glyph::Thumbnails, QString("Ctrl+0"),
                     tr("Show thumbnails of the usual size"))),
      sortBy(MakeMenu(widget, tr("&Sort By"))),
      quickLook(Make(widget, tr("&Quick Look"), Glyph::Search, QString("Space"),
                     tr("Look at the pages of the selected document"))),
      details(Make(widget, tr("&Details"), Glyph::Document, QString("F9"),
                   tr("Show or hide what is known of the selected documents"))),
      find(Make(widget, tr("&Find"), Glyph::Search, QKeySequence::Find, tr("Find documents by name"))),
      signOut(Make(widget, tr("Si&gn Out"), Glyph::Server, {}, tr("Forget the password and choose another cloud"))),
      widget(widget)
{
    zoomIn->setShortcuts({QString("Ctrl++"), QString("Ctrl+=")}); // where + needs Shift
    const auto modes = new QActionGroup(&widget);
    for (QAction* const action : {thumbnails, list}) {
        action->setCheckable(true);
        modes->addAction(action);
    }
    details->setCheckable(true);
    quickLook->setAutoRepeat(false);
    quickLook->setShortcutContext(Qt::WidgetShortcut); // elsewhere the key presses buttons
}

void DocumentActions::AddMenusTo(QMenuBar& bar) const
{
    QAction* const programs = bar.actions().value(0); // its own menus come last
    if (QMenu* const program = programs ? programs->menu() : nullptr) {
        const auto entries = program->actions();
        program->insertAction(entries.last(), signOut); // before Quit
    }
    const auto add = [&](const QString& title, const QList<QAction*>& entries) {
        const auto menu = MakeMenu(widget, title);
        for (QAction* const entry : entries) {
            if (entry) {
                menu->addAction(entry);
            } else {
                menu->addSeparator();
            }
        }
        bar.insertMenu(programs, menu);
    };
    add(tr("&Documents"), {upload, paste, nullptr, open, showInFolder, download, downloadTo, uploadChanges, resolve,
                           useCloud, copy, nullptr, remove, undoRemoval});
    add(tr("&View"), {thumbnails, list, nullptr, zoomIn, zoomOut, usualSize, nullptr, sortBy->menuAction(), nullptr,
                      quickLook, details, nullptr, find, refresh});
}

void DocumentActions::AddTo(QToolBar& bar) const
{
    for (QAction* const action : {upload, download, open, uploadChanges, remove, refresh, thumbnails, list}) {
        if (action == thumbnails) {
            bar.addSeparator();
        }
        bar.addAction(action);
        bar.widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
        if (action->actionGroup()) {
            SetAccessibleRole(*bar.widgetForAction(action), QAccessible::RadioButton);
        }
    }
}

void DocumentActions::AddDocumentEntriesTo(QMenu& menu) const
{
    menu.addActions({resolve, open, quickLook, showInFolder});
    menu.addSeparator();
    menu.addActions({download, downloadTo, uploadChanges, useCloud, copy});
    menu.addSeparator();
    menu.addAction(remove);
}

void DocumentActions::AddGeneralEntriesTo(QMenu& menu) const
{
    menu.addActions({upload, paste});
    menu.addSeparator();
    menu.addMenu(sortBy);
    const auto view = menu.addMenu(tr("&View"));
    view->addActions({thumbnails, list});
    view->addSeparator();
    view->addActions({zoomIn, zoomOut, usualSize});
    menu.addAction(refresh);
}

void DocumentActions::Update(const Situation& situation)
{
    const bool canTransfer = situation.isSignedIn || situation.isOffline;
    upload->setEnabled(canTransfer);
    download->setEnabled(canTransfer && situation.isAnySelected);
    downloadTo->setEnabled(canTransfer && situation.isAnySelected);
    open->setEnabled(situation.isAnySelected);
    useCloud->setVisible(situation.isAnySelectedChangedHere);
    useCloud->setEnabled(canTransfer);
    uploadChanges->setEnabled(canTransfer && situation.isAnySelectedChangedHere);
    resolve->setVisible(situation.isAnySelectedInConflict);
    resolve->setEnabled(canTransfer);
    showInFolder->setEnabled(situation.isAnySelectedHere);
    quickLook->setEnabled(situation.isAnySelected || situation.isAnyCurrent);
    copy->setEnabled(situation.isAnySelected);
    paste->setEnabled(canTransfer);
    remove->setEnabled(canTransfer && situation.isAnySelected);
    undoRemoval->setEnabled(situation.isRemovalPending);
    // The library does not refresh during transfers.
    refresh->setEnabled(canTransfer && !situation.hasRunningTransfers);
}

} // namespace Norlis::Window

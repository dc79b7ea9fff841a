#include "DocumentActions.h"

#include "Glyphs.h"

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

} // namespace

DocumentActions::DocumentActions(QWidget& widget)
    : upload(Make(widget, tr("&Upload…"), Glyph::Upload, Qt::CTRL + Qt::Key_U, tr("Upload PDF files to the cloud"))),
      download(Make(widget, tr("&Download"), Glyph::Download, Qt::CTRL + Qt::Key_D,
                    tr("Download the selected documents to the downloads folder"))),
      downloadTo(Make(widget, tr("Download &To…"), Glyph::Folder, Qt::CTRL + Qt::SHIFT + Qt::Key_D,
                      tr("Download the selected documents to a folder of your choice"))),
      open(Make(widget, tr("&Open"), Glyph::Open, QKeySequence::Open,
                tr("Open the selected documents, downloading them first if necessary"))),
      uploadChanges(Make(widget, tr("Upload &Changes"), Glyph::UploadChanges, QKeySequence::Save,
                         tr("Update the documents in the cloud with the changes you made on this computer"))),
      remove(Make(widget, tr("&Remove…"), Glyph::Remove, QKeySequence::Delete,
                  tr("Remove the selected documents from the cloud"))),
      refresh(Make(widget, tr("&Refresh"), Glyph::Refresh, QKeySequence::Refresh, tr("Reload the list of documents"))),
      thumbnails(
          Make(widget, tr("&Thumbnails"), Glyph::Thumbnails, Qt::CTRL + Qt::Key_1, tr("Show documents as thumbnails"))),
      list(Make(widget, tr("&List"), Glyph::List, Qt::CTRL + Qt::Key_2, tr("Show documents as a list"))),
      find(Make(widget, tr("&Find"), Glyph::Search, QKeySequence::Find, tr("Find documents by name"))),
      signOut(Make(widget, tr("Si&gn Out"), Glyph::Cancel, {}, tr("Forget the password and choose another cloud"))),
      widget(widget)
{
    const auto modes = new QActionGroup(&widget);
    for (QAction* const action : {thumbnails, list}) {
        action->setCheckable(true);
        modes->addAction(action);
    }
}

void DocumentActions::AddMenusTo(QMenuBar& bar) const
{
    const auto add = [&](const QString& title, const QList<QAction*>& entries) {
        const auto menu = new QMenu(title, &widget);
        for (QAction* const entry : entries) {
            if (entry) {
                menu->addAction(entry);
            } else {
                menu->addSeparator();
            }
        }
        bar.insertMenu(bar.actions().value(bar.actions().size() - 1), menu); // the last one is the application menu
    };
    add(tr("&Documents"),
        {upload, nullptr, open, download, downloadTo, uploadChanges, nullptr, remove, nullptr, signOut});
    add(tr("&View"), {thumbnails, list, nullptr, find, refresh});
}

void DocumentActions::AddTo(QToolBar& bar) const
{
    for (QAction* const action : {upload, download, open, uploadChanges, remove, refresh, thumbnails, list}) {
        if (action == thumbnails) {
            bar.addSeparator();
        }
        bar.addAction(action);
        bar.widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    }
}

void DocumentActions::Update(const Situation& situation)
{
    const bool canAct = situation.isSignedIn && situation.isAnySelected;
    upload->setEnabled(situation.isSignedIn);
    download->setEnabled(canAct);
    downloadTo->setEnabled(canAct);
    open->setEnabled(situation.isAnySelected);
    uploadChanges->setEnabled(situation.isSignedIn && situation.isAnySelectedChangedHere);
    remove->setEnabled(canAct);
    // The library does not refresh during transfers.
    refresh->setEnabled(situation.isSignedIn && !situation.hasRunningTransfers);
}

} // namespace Norlis::Window

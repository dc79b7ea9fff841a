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
    const QString plainKeys = keys.toString(QKeySequence::NativeText);
    action->setToolTip(plainKeys.isEmpty() ? tip : tip + " (" + plainKeys + ')');
    widget.addAction(action);
    return action;
}

} // namespace

DocumentActions::DocumentActions(QWidget& widget)
    : upload(Make(widget, tr("&Upload …"), Glyph::Upload, Qt::CTRL + Qt::Key_U, tr("Send PDF files to the cloud"))),
      download(Make(widget, tr("&Download"), Glyph::Download, Qt::CTRL + Qt::Key_D,
                    tr("Fetch the selected documents into the folder for downloads"))),
      downloadTo(Make(widget, tr("Download &To …"), Glyph::Folder, Qt::CTRL + Qt::SHIFT + Qt::Key_D,
                      tr("Fetch the selected documents into a folder that you choose"))),
      open(Make(widget, tr("&Open"), Glyph::Open, QKeySequence::Open,
                tr("Open the selected documents, and fetch those that are not here"))),
      uploadChanges(Make(widget, tr("Upload &Changes"), Glyph::UploadChanges, QKeySequence::Save,
                         tr("Replace the documents in the cloud by what you have changed here"))),
      remove(Make(widget, tr("&Remove …"), Glyph::Remove, QKeySequence::Delete,
                  tr("Remove the selected documents from the cloud"))),
      refresh(
          Make(widget, tr("&Refresh"), Glyph::Refresh, QKeySequence::Refresh, tr("Fetch the list of documents again"))),
      thumbnails(Make(widget, tr("&Thumbnails"), Glyph::Thumbnails, Qt::CTRL + Qt::Key_1, tr("Show pictures"))),
      list(Make(widget, tr("&List"), Glyph::List, Qt::CTRL + Qt::Key_2, tr("Show one document per line"))),
      find(Make(widget, tr("&Find"), Glyph::Search, QKeySequence::Find, tr("Look for a document by its name"))),
      signOut(Make(widget, tr("Si&gn Out"), Glyph::Cancel, {}, tr("Forget the password and show another cloud"))),
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
        bar.insertMenu(bar.actions().value(bar.actions().size() - 1), menu); // the last one is the program's own
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
    // The library refreshes between transfers only.
    refresh->setEnabled(situation.isSignedIn && !situation.hasRunningTransfers);
}

} // namespace Norlis::Window

#pragma once

#include <QCoreApplication>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

namespace Norlis::Window {

/// What can be done with documents, for menus, toolbar and keyboard. Whoever carries it out connects to the actions.
class DocumentActions {
    Q_DECLARE_TR_FUNCTIONS(Norlis::Window::DocumentActions)

public:
    /// Decides which actions are enabled.
    struct Situation {
        bool isSignedIn = false;
        bool isOffline = false; ///< and transfers wait
        bool hasRunningTransfers = false;
        bool isAnySelected = false;
        bool isAnySelectedHere = false;
        bool isAnySelectedChangedHere = false;
        bool isAnySelectedInConflict = false;
        bool isRemovalPending = false;
        bool isAnyCurrent = false; ///< where the keyboard is, selected or not
    };

    /// \param widget owns the actions; their shortcuts work inside it
    explicit DocumentActions(QWidget& widget);

    /// The menus live as long as the widget.
    void AddMenusTo(QMenuBar& bar) const;
    void AddTo(QToolBar& bar) const;

    /// What can be done with the selected documents.
    void AddDocumentEntriesTo(QMenu& menu) const;

    /// What can be done where there is no document.
    void AddGeneralEntriesTo(QMenu& menu) const;

    void Update(const Situation& situation);

    QAction* const upload;
    QAction* const download;
    QAction* const downloadTo;
    QAction* const open;
    QAction* const showInFolder;
    QAction* const uploadChanges;
    QAction* const resolve;  ///< shown where there is a conflict
    QAction* const useCloud; ///< shown where there are changes that could be given up
    QAction* const copy;
    QAction* const paste;
    QAction* const remove;
    QAction* const undoRemoval;
    QAction* const refresh;
    QAction* const thumbnails;
    QAction* const list;
    QAction* const zoomIn;
    QAction* const zoomOut;
    QAction* const usualSize;
    QMenu* const sortBy;      ///< whoever sorts adds the entries
    QAction* const quickLook; ///< its key works in the documents' view only
    QAction* const details;
    QAction* const find;
    QAction* const signOut;

private:
    QWidget& widget;
};

} // namespace Norlis::Window

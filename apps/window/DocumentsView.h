#pragma once

#include "DocumentDelegate.h"

#include <QListView>
#include <QTimer>

namespace Norlis::Window {

/// The documents, as thumbnails or as a list.
class DocumentsView : public QListView {
    Q_OBJECT

public:
    explicit DocumentsView(QWidget* parent = nullptr);

    Layout Mode() const;
    void SetMode(Layout newMode);

    /// Ids of the selected documents, in the order of the view.
    QStringList SelectedIds() const;

    /// The picture in that file has changed.
    void ForgetPicture(const QString& path);

signals:
    void SelectionChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void Arrange();

    Thumbnails thumbnails;
    DocumentDelegate painting{thumbnails};
    Layout mode = Layout::Thumbnails;

    // Of rows that went just now: a document that was sent or fetched leaves the list and enters it again at once.
    QSet<QString> formerlySelected;
    QString formerlyCurrent;
    QTimer forgetting;
};

} // namespace Norlis::Window

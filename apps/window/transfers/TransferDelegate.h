#pragma once

#include <QStyledItemDelegate>

namespace Norlis::Window {

/// Paints a transfer: direction, name, progress or outcome, and at the end a button for what can be done about it.
class TransferDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Of a row.
    static int HeightOf(const QFontMetrics& metrics);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

signals:
    /// The button at the end of the row was clicked.
    void Clicked(const QModelIndex& index);

private:
    QPersistentModelIndex pressed; ///< the row whose button was pressed last
};

} // namespace Norlis::Window

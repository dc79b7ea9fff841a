#pragma once

#include <QCollator>
#include <QHash>
#include <QSortFilterProxyModel>

namespace Norlis::Window {

/// The documents that the user looks for, in the order that the user chose, with texts for tool tips and screen
/// readers.
class DocumentsFilter : public QSortFilterProxyModel {
    Q_OBJECT

public:
    enum class Order { Name, Modified, Size };

    explicit DocumentsFilter(QObject* parent = nullptr);

    /// Shows the documents whose names contain all words of the text, in any case.
    void Search(const QString& text);
    void SortBy(Order newOrder, Qt::SortOrder direction);

    QVariant data(const QModelIndex& index, int role) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    int CompareNames(const QModelIndex& left, const QModelIndex& right) const;
    const QCollatorSortKey& KeyOf(const QString& name) const;

    QStringList words;
    Order order = Order::Name;
    QCollator collator;
    mutable QHash<QString, QCollatorSortKey> keys; ///< comparing two texts takes much longer than comparing their keys
};

} // namespace Norlis::Window

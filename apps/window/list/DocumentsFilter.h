#pragma once

#include "Column.h"

#include <QCollator>
#include <QHash>
#include <QSortFilterProxyModel>

#include <functional>
#include <vector>

namespace Norlis::Window {

/// The documents of a kind that match the search and are not to be removed, in the order that the user chose, with
/// texts for tooltips and screen readers.
class DocumentsFilter : public QSortFilterProxyModel {
    Q_OBJECT

public:
    explicit DocumentsFilter(QObject* parent = nullptr);

    /// By what is to be done about them.
    enum class Kind { All, NotHere, Changed, InConflict };

    /// \param state a PDF::FileInfo::CloudStatus
    static bool IsOfKind(int state, Kind kind);

    /// What a view can ask of a row, beside the roles of the model.
    enum Role {
        FolderRole = Qt::UserRole + 100 ///< QString; of the local copy, empty when there is none that is the user's own
    };

    void setSourceModel(QAbstractItemModel* model) override;

    /// Copies in there are not the user's own: they were fetched to be looked at.
    void SetViewingFolder(const QString& folder);

    /// Shows only documents of a kind.
    void Show(Kind newKind);

    /// Shows the documents whose names contain all words of the text, ignoring case and accents.
    void Search(const QString& text);

    /// Whether a document of the model below is one that is searched for, of whatever kind.
    bool IsFound(const QModelIndex& sourceIndex) const;

    /// Of the local copy; empty while there is none, or none of the user's.
    /// \param document of this model or of the one below
    QString UsersFolder(const QModelIndex& document) const;
    void SortBy(Column column, Qt::SortOrder direction);

    QVariant data(const QModelIndex& index, int role) const override;

    // Documents can be dragged to other programs when they have a local copy.

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    /// What names are compared by. Creating it takes much longer than comparing it.
    struct Name {
        QCollatorSortKey key;
        QString folded;
    };

    /// What documents are compared by.
    struct Rank {
        qint64 number; ///< as milliseconds or bytes; 0 when sorting by name
        QCollatorSortKey name;
        QString id;
    };

    const Name& NameOf(const QString& text) const;

    Rank RankOf(const QModelIndex& index) const;

    /// Sorts and filters everything again, reading each rank only once.
    void Rearrange(const std::function<void()>& rearrange);

    QString viewingFolder;
    QStringList words;
    Kind kind = Kind::All;
    Column order = Column::Name;
    QCollator collator;
    mutable QHash<QString, Name> names;
    std::vector<Rank> ranks; ///< by source row, while everything is sorted again; otherwise empty
};

} // namespace Norlis::Window

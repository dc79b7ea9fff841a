#pragma once

#include <contracts/AbstractFileManager.h>
#include <host/Export.h>

#include <QAbstractListModel>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <deque>

namespace Norlis::Host {

/// The list of documents for Qt's views, one row per document in the list's order.
///
/// Follows the list by its signals, row by row; sorting and filtering are left to QSortFilterProxyModel. It reads the
/// list when a view asks, and copies only what the list answers slowly or in part.
///
/// Lives on the thread of the list. When the list goes first, the model is empty.
class NORLIS_HOST_EXPORT CloudDocumentsModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// What a view can ask of a row.
    enum Role {
        NameRole = Qt::DisplayRole, ///< QString, of the cloud copy
        IdRole = Qt::UserRole,      ///< QString
        PathRole,                   ///< QString; of the local copy, empty when there is none
        StateRole,                  ///< int, a PDF::FileInfo::CloudStatus
        SizeRole,                   ///< qint64, bytes; of the cloud copy, as all but the path
        ModifiedRole,               ///< QDateTime, of the cloud copy
        PreviewsRole,               ///< QMap<QString, QVariant>: file URLs by "small", "medium" and "large"
        HiddenRole                  ///< bool, see SetHidden
    };
    Q_ENUM(Role)

    /// \param documents  stays its owner's and may go first
    /// \param cloudSizes of documents that are in it already, in bytes, by id. Without them, and until such a document
    ///                   is updated, its size is that of the local copy where there is one, and the low 32 bits of it
    explicit CloudDocumentsModel(PDF::AbstractFileManager& documents, const QHash<QString, quint64>& cloudSizes = {},
                                 QObject* parent = nullptr);

    /// Rows that are not hidden.
    int VisibleCount() const;

    /// Of the first row of the id; -1 when there is none.
    int RowOf(const QString& id) const;

    /// Has views leave a document out, whose removal is pending. They do it: with a filter, for instance. They are told
    /// from the event loop, and once of all documents for which this was called meanwhile.
    void SetHidden(const QString& id, bool isHidden);

    /// None below a row.
    int rowCount(const QModelIndex& parent = {}) const override;

    /// \param role one of Role
    QVariant data(const QModelIndex& index, int role) const override;

    /// For QML: "name" for NameRole, and so on.
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Row {
        QString id;
        qint64 size;        ///< which the list tells with a whole record only
        QDateTime modified; ///< asked for again and again when views sort by it
    };

    /// How the list differs from the rows while views are told of a change that it has made already.
    struct Difference {
        int first = 0; ///< the same row and index
        int gone = 0;  ///< rows that the list does not have
        int added = 0; ///< indexes that the rows do not have
    };

    void OnAdded(PDF::FileInfo& file);
    void OnRemoved(const QString& id);
    void OnUpdated(int index);
    void TellOfHidden();

    /// Makes the rows those of the list, whatever happened to it.
    void CatchUp();

    Difference Compare() const;
    void TakeOut(const Difference& change);
    void PutIn(const Difference& change, const std::deque<Row>& added);

    /// Index in the list of a row; -1 when it is gone from there.
    int IndexOf(int row) const;
    int Count() const;
    static Row RowOf(PDF::FileInfo& file);

    QPointer<PDF::AbstractFileManager> documents;
    std::deque<Row> rows;
    QSet<QString> hidden;        ///< ids
    QSet<QString> hiddenChanges; ///< ids of those of which views have not been told
    QTimer hiddenUpdate;
    Difference pending;
};

} // namespace Norlis::Host

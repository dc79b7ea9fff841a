#pragma once

#include "DocumentsFilter.h"

#include <QTimer>
#include <QWidget>

class QButtonGroup;

namespace Norlis::Window {

/// Lets the user see only documents of some state, and tells how many of them the search finds.
class FilterChips : public QWidget {
    Q_OBJECT

public:
    /// \param documents without a filter; outlives this
    /// \param filter    knows which of them are searched for; outlives this
    FilterChips(const QAbstractItemModel& documents, const DocumentsFilter& filter, QWidget* parent = nullptr);

    /// To be called when others are searched for.
    void Count();

    DocumentsFilter::Kind Chosen() const;
    void Choose(DocumentsFilter::Kind kind);

    /// Which documents are shown: a sentence; empty if all are.
    QString Explanation() const;

signals:
    void ChosenChanged();

private:
    const QAbstractItemModel& documents;
    const DocumentsFilter& filter;
    QButtonGroup* const chips;
    QTimer counting; ///< combines many changes into one count
};

} // namespace Norlis::Window

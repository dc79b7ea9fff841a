#pragma once

#include "DocumentsFilter.h"

#include <QTimer>
#include <QWidget>

class QButtonGroup;

namespace Norlis::Window {

/// Lets the user see only documents of some state, and tells how many there are.
class FilterChips : public QWidget {
    Q_OBJECT

public:
    /// \param documents without a filter; outlives this
    explicit FilterChips(const QAbstractItemModel& documents, QWidget* parent = nullptr);

    DocumentsFilter::Kind Chosen() const;
    void Choose(DocumentsFilter::Kind kind);

    /// Which documents are shown: a sentence; empty if all are.
    QString Explanation() const;

signals:
    void ChosenChanged();

private:
    void Count();

    const QAbstractItemModel& documents;
    QButtonGroup* const chips;
    QTimer counting; ///< combines many changes into one count
};

} // namespace Norlis::Window

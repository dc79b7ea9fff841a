#pragma once

#include <QObject>
#include <QStringList>

namespace Norlis::Window {

class DocumentsFilter;
class DocumentsView;
class FilterChips;
class SearchField;

/// What the user narrows the documents to, by the search and by the chips, and what becomes of the selection then.
class Narrowing : public QObject {
    Q_OBJECT

public:
    /// All of them outlive this.
    Narrowing(DocumentsFilter& filter, DocumentsView& view, SearchField& search, FilterChips& chips);

    /// Clears the search and chooses the first chip.
    void ShowAll();

    /// For the user, in whole sentences; empty when all documents are shown.
    QString Explanation() const;

signals:
    /// Other documents are shown.
    void Changed();

private:
    void OnSearch(const QString& text);
    void GoToFound();
    void Apply();

    DocumentsFilter& filter;
    DocumentsView& view;
    SearchField& search;
    FilterChips& chips;
    QStringList before; ///< ids of the documents that were selected before the search
};

} // namespace Norlis::Window

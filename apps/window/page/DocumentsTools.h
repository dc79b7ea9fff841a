#pragma once

#include <QWidget>

class QBoxLayout;
class QComboBox;

namespace Norlis::Window {

class DocumentActions;
class FilterChips;
class FittingToolBar;
class SearchField;

/// What stands above the documents: the toolbar, the search, and what narrows and sorts them.
class DocumentsTools : public QWidget {
    Q_OBJECT

public:
    /// Takes the search, the chips and the box.
    DocumentsTools(const DocumentActions& actions, SearchField& search, FilterChips& chips, QComboBox& order);

    /// Puts the search beside the toolbar where there is room for both, and leaves a low page, as with large letters,
    /// its room for the documents. \param page size of the tools and the documents together
    void Fit(const QSize& page);

private:
    FittingToolBar* const bar;
    SearchField& search;
    QBoxLayout* const upper; ///< the toolbar and the search
};

} // namespace Norlis::Window

#pragma once

#include <QObject>

class QActionGroup;
class QComboBox;
class QMenu;
class QSettings;

namespace Norlis::Window {

class DocumentsFilter;
class ListHeader;

/// The order of the documents, which the user chooses in a menu, in a box or by the header of the list. They are in
/// step, and the choice is remembered.
class DocumentsOrder : public QObject {
    Q_OBJECT

public:
    /// All outlive this.
    /// \param menu given an entry for each order
    DocumentsOrder(DocumentsFilter& filter, ListHeader& header, QMenu& menu, QSettings& settings);

    /// For where there is no header.
    QComboBox& Box();

    /// Sorts as when the program ran last.
    void Restore();

signals:
    void Changed();

private:
    void Choose(int choice);

    DocumentsFilter& filter;
    ListHeader& header;
    QSettings& settings;
    QActionGroup* const entries;
    QComboBox* const box;
    int chosen = -1;
};

} // namespace Norlis::Window

#pragma once

#include <QWidget>

class QLineEdit;

namespace Norlis::Window {

/// A folder that the user types or chooses.
class FolderField : public QWidget {
    Q_OBJECT

public:
    /// \param name   for a screen reader
    /// \param ifNone what an empty field means
    FolderField(const QString& name, const QString& ifNone, const QString& folder, QWidget* parent = nullptr);

    /// Empty if the user has chosen none.
    QString Folder() const;

    /// Whether files can be put there; creates the folder.
    bool IsUsable() const;

private:
    void Choose();

    QLineEdit* const text;
};

} // namespace Norlis::Window

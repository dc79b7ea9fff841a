#pragma once

#include <QObject>

class QSettings;

namespace Norlis::Window {

class DocumentActions;
class DocumentsView;
enum class DisplayMode;

/// How the documents are shown: as thumbnails of some size, or as a list with columns of some widths. What the user
/// chooses is remembered.
class DocumentsLayout : public QObject {
    Q_OBJECT

public:
    /// All outlive this.
    DocumentsLayout(DocumentsView& view, const DocumentActions& actions, QSettings& settings);

    /// Shows them as when the program ran last.
    void Restore();

signals:
    void ModeChanged(Norlis::Window::DisplayMode mode);

private:
    void SetMode(DisplayMode newMode);

    /// \param steps larger, or smaller if negative
    void ZoomBy(int steps);
    void SetZoom(int newZoom);
    void UpdateActions();

    DocumentsView& view;
    const DocumentActions& actions;
    QSettings& settings;
    DisplayMode mode;
    int zoom; ///< which of the sizes of thumbnails
};

} // namespace Norlis::Window

#pragma once

#include <QObject>

class QSettings;

namespace Norlis::Window {

class DocumentActions;
class DocumentsView;
class QuickLook;
enum class DisplayMode;

/// How the documents are shown: as thumbnails of some size, or as a list with columns of some widths. What the user
/// chooses is remembered.
class DocumentsLayout : public QObject {
    Q_OBJECT

public:
    /// All outlive this.
    DocumentsLayout(DocumentsView& view, const DocumentActions& actions, QSettings& settings);

    /// While it is open, the actions that zoom are about its page.
    /// \param look outlives this
    void Follow(const QuickLook& look);

    /// Shows them as when the program ran last.
    void Restore();

signals:
    void ModeChanged(Norlis::Window::DisplayMode mode);

private:
    void SetMode(DisplayMode newMode);

    /// \param steps larger, or smaller if negative
    void ZoomBy(int steps);
    void ZoomUsual();
    void SetZoom(int newZoom);
    void UpdateActions();
    bool IsLooking() const;

    DocumentsView& view;
    const DocumentActions& actions;
    QSettings& settings;
    const QuickLook* quickLook = nullptr; ///< see Follow
    DisplayMode mode;
    int zoom; ///< which of the sizes of thumbnails
};

} // namespace Norlis::Window

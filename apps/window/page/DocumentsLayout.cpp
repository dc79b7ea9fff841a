#include "DocumentsLayout.h"

#include "QuickLook.h"

#include <apps/window/commands/DocumentActions.h>
#include <apps/window/list/DocumentsView.h>
#include <apps/window/pictures/PageView.h>

#include <QAction>
#include <QSettings>

#include <algorithm>
#include <array>

namespace Norlis::Window {

namespace {

namespace Key {
const auto mode = QStringLiteral("view/mode");
const auto zoom = QStringLiteral("view/zoom");
const auto columns = QStringLiteral("view/columns");
} // namespace Key

constexpr int thumbnailsMode = 0; // in the settings
constexpr int listMode = 1;

constexpr std::array<int, 8> edges = {96, 120, 144, 176, 208, 240, 280, 320};
constexpr int usualZoom = 2;

} // namespace

DocumentsLayout::DocumentsLayout(DocumentsView& view, const DocumentActions& actions, QSettings& settings)
    : view(view),
      actions(actions),
      settings(settings),
      mode(DisplayMode::Thumbnails),
      zoom(usualZoom)
{
    connect(actions.thumbnails, &QAction::triggered, this, [this] { SetMode(DisplayMode::Thumbnails); });
    connect(actions.list, &QAction::triggered, this, [this] { SetMode(DisplayMode::List); });
    connect(actions.zoomIn, &QAction::triggered, this, [this] { ZoomBy(1); });
    connect(actions.zoomOut, &QAction::triggered, this, [this] { ZoomBy(-1); });
    connect(actions.usualSize, &QAction::triggered, this, &DocumentsLayout::ZoomUsual);
    connect(&view, &DocumentsView::ZoomRequested, this, &DocumentsLayout::ZoomBy);
    connect(&view.Header(), &ListHeader::WidthsChanged, this, [this] {
        QVariantList widths;
        const auto current = this->view.Header().Widths();
        for (const int width : current) {
            widths.append(width);
        }
        this->settings.setValue(Key::columns, widths);
    });
}

void DocumentsLayout::Restore()
{
    QList<int> widths;
    const QVariantList kept = settings.value(Key::columns).toList();
    for (const QVariant& width : kept) {
        widths.append(width.toInt());
    }
    view.Header().SetWidths(widths);
    SetZoom(settings.value(Key::zoom, usualZoom).toInt());
    SetMode(settings.value(Key::mode).toInt() == listMode ? DisplayMode::List : DisplayMode::Thumbnails);
}

void DocumentsLayout::SetMode(DisplayMode newMode)
{
    mode = newMode;
    view.SetMode(mode);
    (mode == DisplayMode::List ? actions.list : actions.thumbnails)->setChecked(true);
    settings.setValue(Key::mode, mode == DisplayMode::List ? listMode : thumbnailsMode);
    UpdateActions();
    emit ModeChanged(mode);
}

void DocumentsLayout::Follow(const QuickLook& look)
{
    quickLook = &look;
    connect(quickLook, &QuickLook::ZoomChanged, this, &DocumentsLayout::UpdateActions);
}

void DocumentsLayout::ZoomUsual()
{
    if (IsLooking()) {
        quickLook->Pages().Fit();
    } else {
        SetZoom(usualZoom);
    }
}

bool DocumentsLayout::IsLooking() const
{
    return quickLook && quickLook->isVisible();
}

void DocumentsLayout::ZoomBy(int steps)
{
    if (IsLooking()) {
        quickLook->Pages().ZoomBy(steps);
    } else if (mode == DisplayMode::Thumbnails) {
        SetZoom(zoom + steps);
    }
}

void DocumentsLayout::SetZoom(int newZoom)
{
    const int largest = static_cast<int>(edges.size()) - 1;
    zoom = qBound(0, newZoom, largest);
    view.SetThumbnailEdge(edges.at(zoom));
    settings.setValue(Key::zoom, zoom);
    UpdateActions();
}

void DocumentsLayout::UpdateActions()
{
    if (IsLooking()) {
        const PageView& page = quickLook->Pages();
        actions.zoomIn->setEnabled(page.CanZoomIn());
        actions.zoomOut->setEnabled(page.CanZoomOut());
        actions.usualSize->setEnabled(page.CanZoomOut());
        return;
    }
    const int largest = static_cast<int>(edges.size()) - 1;
    const bool isPossible = mode == DisplayMode::Thumbnails;
    actions.zoomIn->setEnabled(isPossible && zoom < largest);
    actions.zoomOut->setEnabled(isPossible && zoom > 0);
    actions.usualSize->setEnabled(isPossible && zoom != usualZoom);
}

} // namespace Norlis::Window

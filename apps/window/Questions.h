#pragma once

#include <QStringList>

#include <functional>

class QWidget;

namespace Norlis::Window {

// Each opens a dialog over the widget and returns at once; the action runs if the user agrees while the widget exists.

/// Before documents are replaced that have changed in the cloud too.
void AskToReplace(QWidget& widget, const QStringList& names, const std::function<void()>& action);

/// Before documents are removed from the cloud.
void AskToRemove(QWidget& widget, const QStringList& names, const std::function<void()>& action);

} // namespace Norlis::Window

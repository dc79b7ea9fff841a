#pragma once

#include <QStringList>

#include <functional>

class QDialog;
class QMessageBox;
class QWidget;

namespace Norlis::Window {

/// Opens a dialog over its parent's window, as soon as no other one is open there.
void OpenInTurn(QDialog& dialog);

// Each opens a dialog over the widget in its turn and returns at once; the action runs if the user agrees while the
// widget exists.

/// Before something that cannot be taken back.
/// \param consent text of the button
QMessageBox& AskToConfirm(QWidget& widget, const QString& name, const QString& question, const QString& explanation,
                          const QString& consent, const std::function<void()>& action);

/// Before the changes of local copies are given up.
void AskToUseCloud(QWidget& widget, const QStringList& names, const std::function<void()>& action);

/// Before files are uploaded that another program has named.
QMessageBox& AskToUpload(QWidget& widget, const QStringList& names, const std::function<void()>& action);

/// Before many documents are opened.
void AskToOpen(QWidget& widget, int number, const std::function<void()>& action);

/// Before documents are removed from the cloud.
/// \param changed how many of them have changes that are not in the cloud
void AskToRemove(QWidget& widget, const QStringList& names, int changed, const std::function<void()>& action);

} // namespace Norlis::Window

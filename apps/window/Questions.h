#pragma once

#include <QStringList>

#include <functional>

class QMessageBox;
class QWidget;

namespace Norlis::Window {

// Each opens a dialog over the widget and returns at once; the action runs if the user agrees while the widget exists.

/// What to do about a document that was changed both here and in the cloud.
enum class ConflictChoice { KeepBoth, UseMine, UseCloud };

/// About documents that were changed both here and in the cloud. Returns the question, which deletes itself.
/// \param versions what is known of the two versions of a single document, for the user; may be empty
QMessageBox& AskAboutConflicts(QWidget& widget, const QStringList& names, const QString& versions,
                               const std::function<void(ConflictChoice)>& action);

/// Before a document is downloaded whose local copy has changes.
/// \param action told UseMine or UseCloud
void AskAboutLocalChanges(QWidget& widget, const QString& name, const std::function<void(ConflictChoice)>& action);

/// Before the changes of local copies are given up.
void AskToUseCloud(QWidget& widget, const QStringList& names, const std::function<void()>& action);

/// Before files are uploaded whose names documents in the cloud have.
/// \param action told whether the documents are to be replaced; otherwise the new ones get other names
void AskAboutTakenNames(QWidget& widget, const QStringList& names, const std::function<void(bool)>& action);

/// Before files are uploaded that another program has named.
QMessageBox& AskToUpload(QWidget& widget, const QStringList& names, const std::function<void()>& action);

/// Before many documents are opened.
void AskToOpen(QWidget& widget, int number, const std::function<void()>& action);

/// Before documents are removed from the cloud.
/// \param changed how many of them have changes that are not in the cloud
void AskToRemove(QWidget& widget, const QStringList& names, int changed, const std::function<void()>& action);

} // namespace Norlis::Window

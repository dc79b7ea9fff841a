#pragma once

#include <apps/window/MainWindow.h>
#include <apps/window/transfers/Transfers.h>
#include <contracts/FileInfo.h>
#include <host/CloudDocumentsModel.h>
#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Waiting.h>

#include <QAction>
#include <QTemporaryDir>

#include <gmock/gmock.h>

class QAbstractButton;
class QListView;
class QDialog;

namespace Norlis::Test {

/// The whole window over a folder that plays the cloud.
class WindowTest : public testing::Test {
protected:
    using State = PDF::FileInfo::CloudStatus;

    WindowTest();
    ~WindowTest() override;

    /// As a start of the program does, with the last sign-in.
    void Open();

    /// Signs in to the folder before that.
    void OpenCloud();
    void Close();

    QString Local(const QString& name) const;
    QString LocalFile(const QString& name, const QByteArray& content) const;
    QString Cloud(const QString& name = {}) const;
    void PutIntoCloud(const QString& name, const QByteArray& content);

    /// Waits until the documents that the window shows have these names.
    bool Shows(const QStringList& names);
    void Refresh();
    QStringList Names() const;
    int StateOf(const QString& name) const;

    /// Waits until the local copy of a document is that of the cloud.
    bool IsUpToDate(const QString& name) const;

    /// A document in the cloud, "a.pdf", whose local copy is the same and in the folder for downloads; it is selected.
    void OpenWithLocalCopy();

    void Select(const QStringList& names);

    /// A visible part of the window, by its object name or its type.
    template <typename Part>
    Part* Find(const QString& name = {}) const
    {
        for (Part* const part : window->findChildren<Part*>(name)) {
            if (part->isVisible()) {
                return part;
            }
        }
        return nullptr;
    }

    /// By its text, without marks for keys.
    QAction* Action(const QString& text) const;
    QAbstractButton* Button(const QString& text) const;
    void Click(QWidget* widget);
    void ClickButton(const QString& text);
    void Type(QWidget* widget, const QString& text);

    /// What the message below the documents says; empty when there is none.
    QString Message() const;

    /// What stands where there are no documents; empty when there are some.
    QString EmptyTitle() const;

    /// What the line at the bottom says.
    QString Status() const;

    /// Open questions to the user.
    QList<QDialog*> Questions() const;

    /// What the first of them asks, and what else it says.
    QString Question() const;
    QString Explanation() const;
    void Answer(const QString& button);

    /// Drops files onto the documents.
    void Drop(const QStringList& paths);

    /// Rows of the list of transfers: "name status".
    QStringList Transfers() const;
    QListView* Documents() const;

    QTemporaryDir folder;
    std::unique_ptr<Window::MainWindow> window;

private:
    bool wasOpened = false;
};

} // namespace Norlis::Test

#pragma once

#include <apps/window/commands/DocumentActions.h>
#include <host/session/CloudSession.h>

#include <QAbstractItemModel>
#include <QScrollArea>

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace Norlis::Window {

class DocumentsView;
class PagePicture;

/// Beside the documents: what is known of the selected one, with a large picture, and what can be done with it. Of
/// several, how many they are and how large together.
class DetailsPane : public QScrollArea {
    Q_OBJECT

public:
    /// \param actions what it offers; outlives it as the others do
    DetailsPane(Host::CloudSession& session, DocumentsView& view, const DocumentActions& actions,
                QWidget* parent = nullptr);

    /// To be called when the selection, or one of the selected documents, has changed.
    void Update();

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// It is not shown while its text is empty.
    struct Line {
        QWidget* line;
        QLabel* text;
    };

    /// What speaks for itself needs no caption.
    Line AddLine(QVBoxLayout& layout, const QString& caption, const QString& objectName, QLabel* text);
    void AddButtons(QVBoxLayout& layout);
    void MuteCaptions();
    static void Fill(const Line& line, const QString& text);
    /// A hint in the place of a name is not.
    void SetBold(bool isName);
    void ShowDocument(const QModelIndex& document);
    void ShowSeveral(const QModelIndexList& documents);
    void OfferActions(const QModelIndexList& documents);

    Host::CloudSession& session;
    DocumentsView& view;
    const DocumentActions& actions;
    PagePicture* const picture;
    QLabel* const version; ///< whose picture it is
    QLabel* const name;
    QList<QLabel*> captions;
    Line state;
    Line inCloud;
    Line here;
    Line folder;
    QList<QToolButton*> buttons;
};

} // namespace Norlis::Window

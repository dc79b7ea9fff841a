#pragma once

#include <host/session/CloudSession.h>

#include <QFrame>
#include <QTimer>

class QLabel;
class QPushButton;
class QToolButton;

namespace Norlis::Window {

class DocumentsView;
class ElidedLabel;
class PagePicture;
class PageView;

/// A sheet over the documents that shows the pages of one of them, one at a time. It follows the selection and moves
/// it. Pages can be larger than the sheet. The keyboard stays inside until the sheet is closed.
class QuickLook : public QFrame {
    Q_OBJECT

public:
    /// \param view has its model
    /// \param page what it covers, which owns it
    QuickLook(Host::CloudSession& session, DocumentsView& view, QWidget& page);

    /// Shows the current document of the view.
    void Open();

    /// Gives the keyboard back to the documents.
    void Close();

    /// Of the document, whether or not it is shown.
    PageView& Pages() const;

    /// What can be done on the sheet by which keys, in the user's language.
    static QVector<QPair<QString, QList<QKeySequence>>> Keys();

signals:
    void OpenRequested(const QString& id);

    /// The user wants to see the later pages of a document that is not here.
    void FetchRequested(const QString& id);

    /// How large the page is or can be has changed, or the sheet was closed.
    void ZoomChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Arrange();
    void ConnectKeys();
    void ConnectSession();

    /// To the document that lies in the direction of an arrow key.
    void MoveTo(Qt::Key arrow);
    void TurnTo(int number);

    /// Over a page that is larger than the view, or else to the document that lies there.
    void GoTo(Qt::Key arrow);

    /// To what follows of the page, or to the next page; or the other way.
    void Read(bool isForward);

    /// Shows the document as it is now, or nothing any more when it has gone.
    void Update();
    void UpdatePage();

    /// The sheet is as wide as the page needs it.
    void Fit();

    /// Closes it and leaves the keyboard where it is.
    void Leave();

    /// What stands below the page, beside its number; empty when nothing does.
    QString Notice() const;

    Host::CloudSession& session;
    DocumentsView& view;
    QWidget& page;
    QFrame* const sheet;
    QLabel* const badge;
    ElidedLabel* const name;
    ElidedLabel* const state;
    PageView* const pages;
    PagePicture* const picture;
    QToolButton* const previousPage;
    QToolButton* const nextPage;
    QToolButton* const zoomOut;
    QToolButton* const zoomIn;
    QLabel* const zoom; ///< percent, while the page is larger than it fits
    QLabel* const pageNumber;
    QFrame* const help; ///< the notice, and what to do about it
    QLabel* const notice;
    QPushButton* const fetch;

    QString id;     ///< of the document that is shown; empty while none is
    int number = 1; ///< of the page that is wanted
    bool isFetching = false;
    int fetched = 0; ///< percent
    QString failure; ///< why it was not fetched
    int turned = 0;  ///< by the wheel, not yet a page
    QTimer loading;  ///< a page, which is not worth telling yet
    QTimer update;   ///< a document whose transfer has ended leaves the list and enters it again at once
};

} // namespace Norlis::Window

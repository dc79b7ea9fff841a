#pragma once

#include <host/session/CloudSession.h>

#include <QModelIndex>
#include <QTimer>
#include <QWidget>

namespace Norlis::Window {

/// Shows a page of a document as large as there is room for it: at once a small picture, if there is one, and then one
/// with all of the screen's pixels.
class PagePicture : public QWidget {
    Q_OBJECT

public:
    /// \param session must outlive this
    explicit PagePicture(Host::CloudSession& session, QWidget* parent = nullptr);
    ~PagePicture() override;

    /// The local copy where it is what would be opened, otherwise page one of the document as it is in the cloud. Also
    /// to be called when the document has changed. Until another page of the same document is drawn, the former one
    /// stays.
    /// \param document of a CloudDocumentsModel; an invalid one shows nothing
    /// \param page     from 1; of what is not here, all but page one are blank
    void Show(const QModelIndex& document, int page = 1);

    /// The same of page one, but where the versions differ that of the cloud, as the list does.
    void ShowAsListed(const QModelIndex& document);

    /// Page one of a file on this computer.
    void ShowFile(const QString& path);

    /// Page one of a document as it is in the cloud, whether or not there is a local copy.
    void ShowInCloud(const QString& id);

    /// In pixels, of the picture that is there; empty while there is none.
    QSize PageSize() const;

    /// Whether the local copy is shown, which has more than page one.
    bool IsHere() const;

    /// Of the local copy; 0 while it is not known.
    int PageCount() const;

    /// Whether the page that is wanted is shown, or cannot be.
    bool IsSettled() const;

    /// Why there is no picture of it, without a full stop; English, or empty.
    const QString& Reason() const;

signals:
    /// IsSettled has become true.
    void Settled();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Subject {
        QString id;
        QString path;    ///< of the local copy, if that is shown
        QString version; ///< changes whenever the content does
        int page = 1;
    };

    static QString ThumbnailOf(const QModelIndex& document);
    Subject SubjectOf(const QModelIndex& document, int page) const;
    static Subject FileSubject(const QString& path);
    Subject CloudSubject(const QString& id) const;
    void Show(const Subject& next, const QString& thumbnail);
    void Draw();
    void OnDrawn(qint64 number, const Host::DrawnPage& page);
    QSize WantedBox() const;
    void PaintPlaceholder(QPainter& painter) const;

    Host::CloudSession& session;
    Subject subject;
    QPixmap picture;
    QSize box; ///< in pixels, that the picture was or is drawn for; empty for the small one
    int pageCount = 0;
    QString reason;
    qint64 drawing = 0; ///< see CloudSession; 0 when none is under way
    QTimer resized;
};

} // namespace Norlis::Window

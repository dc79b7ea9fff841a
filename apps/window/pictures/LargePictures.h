#pragma once

#include <QCache>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QStringList>

namespace Norlis::Host {
class CloudSession;
struct DrawnPage;
} // namespace Norlis::Host

namespace Norlis::Window {

/// Pictures for thumbnails that are larger than the previews of the list. Only those in view are drawn, a few at a
/// time, and those that were seen long ago are forgotten.
class LargePictures : public QObject {
    Q_OBJECT

public:
    explicit LargePictures(Host::CloudSession& session, QObject* parent = nullptr);

    /// Has pictures of these documents drawn, and of no others.
    /// \param newEdge of the larger side, in pixels of the screen; without effect if the previews are large enough
    void Show(const QStringList& ids, int newEdge);

    /// Null if there is none, or none is needed.
    QPixmap Find(const QString& id) const;

    /// To be called when the document has other content.
    void Forget(const QString& id);

signals:
    void Drawn(const QString& id);

private:
    void Begin();
    void Cancel(const QString& id);
    void OnDrawn(qint64 drawing, const Host::DrawnPage& page);

    struct Picture {
        QPixmap pixmap;
        int edge; ///< that it was drawn for
    };

    Host::CloudSession& session;
    QCache<QString, Picture> pictures; ///< by id
    QStringList shown;                 ///< ids
    QHash<qint64, QString> running;    ///< ids by drawing
    QSet<QString> failed;              ///< ids, of what is shown
    int edge = 0;                      ///< that is needed; 0 if the previews are large enough
};

} // namespace Norlis::Window

#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QThreadPool>

#include <deque>

namespace Norlis::Window {

/// Previews, read from their files on other threads when a view first asks for them. The latest request is
/// served first, since it is what the user is looking at; what was scrolled out of view long ago is not read at all.
class Thumbnails : public QObject {
    Q_OBJECT

public:
    static constexpr int maxWanted = 400; ///< several screenfuls

    /// \param limit size of the cache, in bytes
    explicit Thumbnails(qsizetype limit = 40 * 1024 * 1024, QObject* parent = nullptr);
    ~Thumbnails() override;

    /// The preview; null if it cannot be read or is not loaded yet, in which case Loaded follows. Also, until that, the
    /// former one of a file that has changed.
    QPixmap Find(const QString& path);

    /// The same, without having it loaded.
    QPixmap Known(const QString& path) const;

    /// To be called when the preview in the file has changed.
    void NoteChange(const QString& path);

signals:
    void Loaded(const QString& path);

private:
    void ReadNext();
    void Keep(const QString& path, const QImage& image);

    QCache<QString, QPixmap> previews; ///< a null one for a file that cannot be read
    std::deque<QString> wanted;        ///< the latest request first
    QSet<QString> reading;
    QSet<QString> changed; ///< paths of files that have changed since they were read
    QThreadPool pool;
};

} // namespace Norlis::Window

#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QThreadPool>

#include <deque>

namespace Norlis::Window {

/// Pictures of documents, read from their files on other threads when a view first wants them. What was wanted last is
/// read first, since it is what the user looks at; what has long been scrolled away is not read at all.
class Thumbnails : public QObject {
    Q_OBJECT

public:
    /// \param limit of the pictures that are kept, in bytes
    explicit Thumbnails(qsizetype limit = 64 * 1024 * 1024, QObject* parent = nullptr);
    ~Thumbnails() override;

    /// The picture; a null one when it is not there yet, in which case Loaded follows, or cannot be read.
    QPixmap Find(const QString& path);

    /// The file has another picture now.
    void Forget(const QString& path);

signals:
    void Loaded(const QString& path);

private:
    void ReadNext();
    void Keep(const QString& path, const QImage& image);

    QCache<QString, QPixmap> pictures; ///< a null picture stands for a file without one
    std::deque<QString> wanted;        ///< the latest first
    QSet<QString> reading;
    QSet<QString> outdated; ///< of those that are being read
    QThreadPool pool;
};

} // namespace Norlis::Window

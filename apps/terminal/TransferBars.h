#pragma once

#include <apps/common/TransferMeter.h>

#include <QString>
#include <QStringList>

#include <vector>

namespace Norlis::Terminal {

/// The progress of several transfers, as lines for a terminal: one for each that is running or, if there are too many,
/// one for all of them.
class TransferBars {
public:
    /// \param verb what the transfers do, as in "Uploading"
    explicit TransferBars(const QString& verb);

    // Times are those of any clock that runs evenly, in milliseconds.

    /// Adds a transfer. Its name is made printable.
    /// \param size in bytes; 0 where speed and time left are of no interest
    void Add(const QString& key, const QString& name, qint64 size = 0);

    /// \param percent clamped to 0 to 100
    void SetProgress(const QString& key, int percent, qint64 time = 0);
    void Remove(const QString& key);

    /// Lines that are narrower than the window and leave some of its rows free. Empty if there is no room.
    /// A wide window has room for speed and time left too.
    QStringList Lines(int columns, int rows, qint64 time = 0) const;

private:
    struct Transfer {
        QString key;
        QString name;
        int percent;
        qint64 size;
        Apps::TransferMeter meter = {};

        qint64 Transferred() const;
    };

    std::vector<Transfer>::iterator Find(const QString& key);

    QString verb;
    std::vector<Transfer> running;
    int addedCount = 0;
    qint64 addedSize = 0;   ///< bytes
    qint64 transferred = 0; ///< bytes, of those that have ended too
    Apps::TransferMeter meter;
};

} // namespace Norlis::Terminal

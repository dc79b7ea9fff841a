#pragma once

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

    /// Adds a transfer. Its name is made printable.
    void Add(const QString& key, const QString& name);

    /// \param percent clamped to 0 to 100
    void SetProgress(const QString& key, int percent);
    void Remove(const QString& key);

    /// Lines that are narrower than the window and leave some of its rows free. Empty if there is no room.
    QStringList Lines(int columns, int rows) const;

private:
    struct Transfer {
        QString key;
        QString name;
        int percent;
    };

    std::vector<Transfer>::iterator Find(const QString& key);

    QString verb;
    std::vector<Transfer> running;
    int addedCount = 0;
};

} // namespace Norlis::Terminal

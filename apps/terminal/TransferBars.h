#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Norlis::Terminal {

/// How far several transfers are, as lines for a terminal: one for each that runs, or, when these are too many, one for
/// all of them.
class TransferBars {
public:
    /// \param verb what the transfers do, as in "Uploading"
    explicit TransferBars(const QString& verb);

    /// A transfer that will run. Names are made printable.
    void Add(const QString& key, const QString& name);

    /// \param percent 0 to 100; other values are brought into that range
    void SetProgress(const QString& key, int percent);
    void Remove(const QString& key);

    /// Lines that take fewer columns than the window has, and leave some of its rows free. Empty when there is no room.
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

#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>

namespace Norlis::Window {

/// Keeps two windows from working with the same data folder: the second start hands over to the first.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// \param dataFolder created when missing. Throws std::runtime_error, with a text for the user, when it cannot be
    ///                   written to.
    explicit SingleInstance(const QString& dataFolder);

    /// Whether this is the first. If not, the other one is asked to come to the front and to take the files over.
    /// \param files absolute paths
    bool IsFirst(const QStringList& files);

signals:
    /// Another start has handed over.
    void Called(const QStringList& files);

private:
    void Receive();

    QLockFile lock;
    const QString socket; ///< its path
    QLocalServer server;
};

} // namespace Norlis::Window

#pragma once

#include <QObject>
#include <QTimer>

namespace Norlis::Host {

/// Tells when the network may be there again: a link, an address or a route has come or gone. What comes together is
/// told once. The kernel's own notices (rtnetlink(7)) are read, since no class for it is in both Qt 5 and Qt 6; on a
/// system without them nothing is told.
class NetworkWatch : public QObject {
    Q_OBJECT

public:
    explicit NetworkWatch(QObject* parent = nullptr);
    ~NetworkWatch() override;

signals:
    void Changed();

private:
    void Open();
    void Read();

    int socket = -1;
    QTimer quiet; ///< runs while more may come
};

} // namespace Norlis::Host

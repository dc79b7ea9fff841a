#pragma once

#include <QObject>
#include <QStringList>

#include <deque>

namespace Norlis::Host {
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

class MessageBar;

/// Removes documents a little later than the user asks for it, and offers to take that back until then.
class RemovalUndo : public QObject {
    Q_OBJECT

public:
    /// Both outlive this.
    RemovalUndo(Host::CloudSession& session, MessageBar& message);

    /// \param text says what was removed
    void Remove(const QStringList& ids, const QString& text);

    /// Takes back the last removal that has not been sent.
    void Undo();

    bool IsPossible() const;

signals:
    void PossibleChanged();
    void Removed();
    void TakenBack(const QStringList& ids);

private:
    struct Removal {
        int number;
        QStringList ids;
        QString text;
    };

    void Offer();
    void End(int number);

    Host::CloudSession& session;
    MessageBar& message;
    std::deque<Removal> removals; ///< that can be taken back, the last one at the end
    int lastNumber = 0;
};

} // namespace Norlis::Window

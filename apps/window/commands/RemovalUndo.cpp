#include "RemovalUndo.h"

#include <apps/window/widgets/MessageBar.h>
#include <host/session/CloudSession.h>

#include <QTimer>

#include <algorithm>
#include <chrono>

namespace Norlis::Window {

namespace {

constexpr auto timeToThink = std::chrono::seconds(30);

} // namespace

RemovalUndo::RemovalUndo(Host::CloudSession& session, MessageBar& message) : session(session), message(message) {}

void RemovalUndo::Remove(const QStringList& ids, const QString& text)
{
    const int number = ++lastNumber;
    session.RemoveLater(ids, timeToThink);
    removals.push_back({number, ids, text});
    QTimer::singleShot(timeToThink, this, [this, number] { End(number); });
    Offer();
    emit PossibleChanged();
    emit Removed();
}

void RemovalUndo::Undo()
{
    if (removals.empty()) {
        return;
    }
    const QStringList ids = removals.back().ids;
    removals.pop_back();
    session.UndoRemoval(ids);
    Offer();
    const auto tooLate = std::count_if(ids.begin(), ids.end(), [this](const QString& id) {
        return session.IsRemovalPending(id) || !session.Documents().GetFileInfo(id); // sent, or done
    });
    if (tooLate > 0) {
        message.Show(
            Topic::undo,
            tr("It is too late to undo: %n document(s) had already been removed.", nullptr, static_cast<int>(tooLate)),
            {});
    }
    emit PossibleChanged();
    emit TakenBack(ids);
}

bool RemovalUndo::IsPossible() const
{
    return !removals.empty();
}

void RemovalUndo::Offer()
{
    if (removals.empty()) {
        message.Close(Topic::undo);
        return;
    }
    message.Show(Topic::undo, removals.back().text, {}, {{tr("Undo"), [this] { Undo(); }}}, MessageBar::Kind::Notice);
}

void RemovalUndo::End(int number)
{
    const auto found = std::find_if(removals.begin(), removals.end(),
                                    [number](const Removal& removal) { return removal.number == number; });
    if (found == removals.end()) {
        return;
    }
    const bool wasOffered = found + 1 == removals.end();
    removals.erase(found);
    if (wasOffered) {
        message.Close(Topic::undo);
    }
    emit PossibleChanged();
}

} // namespace Norlis::Window

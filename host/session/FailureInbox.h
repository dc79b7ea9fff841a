#pragma once

#include <contracts/OAuth2.h>

#include <QObject>
#include <QVector>

namespace Norlis::Host {

/// Keeps why requests failed, from when the protocol says so until the request's error signal, which follows at once.
/// What nobody has taken by the next turn of the event loop belongs to a request without an error signal, and is
/// dropped: it must not be shown for another one.
class FailureInbox : public QObject {
public:
    /// To be called just before the request ends.
    void Put(const Social::OAuth2::Failure& failure);

    /// To be called in the slot of the request's error signal, even when that is not reported any further. The texts
    /// are empty when the protocol did not say.
    Social::OAuth2::Failure Take();

private:
    QVector<Social::OAuth2::Failure> failures;
    bool isClearingSoon = false;
};

} // namespace Norlis::Host

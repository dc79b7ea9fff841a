#pragma once

#include <contracts/OAuth2.h>

#include <QObject>
#include <QVector>

namespace Norlis::Host {

/// Why requests failed, from the moment at which the protocol tells it until the request's error signal, which follows
/// at once. What nobody has taken by the next turn of the event loop belongs to a request that nobody reports, and is
/// dropped: it must not be shown for another one.
class FailureInbox : public QObject {
public:
    /// To be called just before the request ends.
    void Put(const Social::OAuth2::Failure& failure);

    /// To be called in the slot of the request's error signal, also by those who do not report the request. Its texts
    /// are empty when nobody told.
    Social::OAuth2::Failure Take();

private:
    QVector<Social::OAuth2::Failure> failures;
    bool isClearingSoon = false;
};

} // namespace Norlis::Host

#include "FileRequests.h"

#include "DocumentLock.h"
#include "WebDavSession.h"

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int maxLooks = 3;
constexpr int pause = 200; // milliseconds, longer each time

/// Whether another look may show more.
bool IsPassing(const HttpResponse& response)
{
    const int status = response.head.status;
    return response.fault != HttpResponse::Fault::None || status < 300 || status >= 500;
}

} // namespace

FileRequests::FileRequests(WebDavSession& session, HttpRequest::Lane lane)
    : session(session),
      lane(lane),
      requests(session.http)
{
}

void FileRequests::Look(const QByteArray& name, Looked looked)
{
    LookAt(session.collection.UrlOf(name), std::move(looked));
}

void FileRequests::LookAt(const QByteArray& url, Looked looked)
{
    LookAgain(url, 1, std::move(looked));
}

void FileRequests::LookAgain(const QByteArray& url, int attempts, Looked looked)
{
    requests.Send(OnLane(lane, PropFind(url)), [this, url, attempts,
                                                looked = std::move(looked)](HttpResponse&& response) {
        const auto entry = EntryOfDepth0(response, SegmentsOfUrl(url).value_or(DavPath()));
        if (entry || !IsPassing(response) || attempts == maxLooks) {
            looked(response, entry);
            return;
        }
        QTimer::singleShot(pause * attempts, &session.http, [this, url, attempts, looked, guard = lifetime.Watch()] {
            if (guard) {
                LookAgain(url, attempts + 1, looked);
            }
        });
    });
}

void FileRequests::Move(const QByteArray& from, const QByteArray& to, bool mayOverwrite,
                        const std::vector<const DocumentLock*>& locks, Changed changed)
{
    std::vector<DestinationForm> forms = {DestinationForm::Url, DestinationForm::Path, DestinationForm::PlainUrl};
    if (session.destinationForm) {
        forms = {*session.destinationForm};
    } else if (!session.collection.Url().startsWith("https:")) {
        forms.pop_back();
    }
    MoveInForms(std::move(forms), from, to, mayOverwrite, locks, std::move(changed));
}

bool FileRequests::MayBeTheDestination(const ChangeResult& result) const
{
    const int status = result.response.Status();
    const bool isEncrypted = session.collection.Url().startsWith("https:");
    return !session.destinationForm && (status == 400 || status == 502 || (status == 403 && isEncrypted));
}

void FileRequests::MoveInForms(std::vector<DestinationForm> forms, const QByteArray& from, const QByteArray& to,
                               bool mayOverwrite, const std::vector<const DocumentLock*>& locks, Changed changed)
{
    const DestinationForm form = forms.front();
    forms.erase(forms.begin());
    HttpRequest move =
        OnLane(lane, Social::Move(session.collection.UrlOf(from), session.collection.UrlOf(to), mayOverwrite, form));
    for (const DocumentLock* const lock : locks) {
        move = lock->Allow(move);
    }
    const auto onResponse = [=, changed = std::move(changed)](HttpResponse&& response) {
        const ChangeResult result = JudgeChange(response);
        if (result.IsDone() || result.response.Status() == 412) {
            session.destinationForm = form; // the server has looked at what is there
        } else if (!forms.empty() && MayBeTheDestination(result)) {
            MoveInForms(forms, from, to, mayOverwrite, locks, [this, changed, result](const ChangeResult& next) {
                changed(MayBeTheDestination(next) ? result : next); // what it said of the usual form explains more
            });
            return;
        }
        changed(result);
    };
    requests.Send(move, onResponse);
}

} // namespace Norlis::Social

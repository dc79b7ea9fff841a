#include "OverwriteCheck.h"

namespace Norlis::Social {

OverwriteCheck::OverwriteCheck(WebDavSession& session, const DavDocument& uploaded, Done done)
    : session(session),
      uploaded(uploaded),
      small(session.NewTemporaryName()),
      done(std::move(done)),
      files(session),
      requests(session.http)
{
    HttpRequest put = Put(session.collection.UrlOf(small));
    put.body = uploaded.size == 1 ? "--" : "-"; // the length tells the two apart
    requests.Send(OnLane(HttpRequest::Lane::Transfer, put), [this](HttpResponse&& response) {
        if (JudgeChange(response).IsDone()) {
            TryToOverwrite();
        } else {
            End(this->uploaded.name, small);
        }
    });
}

OverwriteCheck::~OverwriteCheck()
{
    if (done) {
        session.housekeeper.LeaveForNextTime(small);
    }
}

void OverwriteCheck::TryToOverwrite()
{
    files.Move(uploaded.name, small, false, {}, [this](const ChangeResult& result) {
        if (result.response.Status() == 412) {
            session.refusesToOverwrite = true;
            End(uploaded.name, small);
        } else if (result.outcome == ChangeResult::Outcome::Refused) {
            End(uploaded.name, small);
        } else {
            LookWhatHappened();
        }
    });
}

void OverwriteCheck::LookWhatHappened()
{
    files.Look(small, [this](const HttpResponse&, const std::optional<DavEntry>& entry) {
        if (entry && entry->size == uploaded.size) {
            session.refusesToOverwrite = false;
            End(small, uploaded.name); // the uploaded file has that name now
        } else {
            End(uploaded.name, entry ? small : QByteArray());
        }
    });
}

void OverwriteCheck::End(const QByteArray& name, const QByteArray& leftover)
{
    if (leftover.isEmpty()) {
        CallOnce(done, name); // it destroys this object
        return;
    }
    const HttpRequest remove = Delete(session.collection.UrlOf(leftover));
    requests.Send(OnLane(HttpRequest::Lane::Transfer, remove), [this, name](HttpResponse&&) {
        CallOnce(done, name); // it destroys this object
    });
}

} // namespace Norlis::Social

#include "DavResponses.h"

#include "MultiStatusParser.h"

#include <algorithm>
#include <vector>

namespace Norlis::Social {

namespace {

constexpr int failedDependency = 424; // of what failed only because something else did

bool IsSuccess(int status)
{
    return status >= 200 && status < 300;
}

/// Of the resources, or properties, that a multi-status response is about; 0 for what cannot be read.
std::vector<int> InnerStatuses(const QByteArray& body)
{
    std::vector<int> statuses;
    QXmlStreamReader reader(body);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("status") &&
            reader.namespaceUri() == QLatin1String("DAV:")) {
            statuses.push_back(reader.readElementText().simplified().section(' ', 1, 1).toInt());
        }
    }
    if (reader.hasError()) {
        statuses.push_back(0);
    }
    return statuses;
}

bool AreAllSuccesses(const std::vector<int>& statuses)
{
    return !statuses.empty() && std::all_of(statuses.begin(), statuses.end(), IsSuccess);
}

/// The status of the first that failed, and rather of what failed by itself; 0 when none can be read.
int FirstFailure(const std::vector<int>& statuses)
{
    int failure = 0;
    for (const int status : statuses) {
        if (!IsSuccess(status) && (failure == 0 || failure == failedDependency)) {
            failure = status;
        }
    }
    return failure;
}

/// A login page or that of a gateway, which come with any status.
bool IsPage(const HttpResponse& response)
{
    const QByteArray type = response.head.Field("content-type").toLower();
    const QByteArray begin = response.body.left(100).trimmed().toLower();
    return type.startsWith("text/html") || type.startsWith("application/xhtml") || begin.startsWith("<!doctype html") ||
           begin.startsWith("<html");
}

} // namespace

std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path)
{
    MultiStatusParser parser(path);
    if (response.Status() != 207 || !parser.Add(response.body) || !parser.Finish()) {
        return std::nullopt;
    }
    for (const DavEntry& entry : parser.TakeEntries()) {
        if (entry.isSelf) {
            return entry;
        }
    }
    return std::nullopt;
}

ChangeResult JudgeChange(const HttpResponse& response)
{
    using Outcome = ChangeResult::Outcome;
    ChangeResult result{Outcome::Unclear, response, false};
    int& status = result.response.head.status;
    if (response.fault != HttpResponse::Fault::None) {
        return result;
    }
    if (status == 207) {
        const std::vector<int> inner = InnerStatuses(response.body);
        const int failure = FirstFailure(inner);
        status = AreAllSuccesses(inner) ? 204 : failure != 0 ? failure : status;
        result.isOfPart = true;
    }
    if (status == 201 || status == 204 || (status == 200 && !IsPage(response))) {
        result.outcome = Outcome::Done;
    } else if (status >= 300 && status < 500 && !IsMissing(status)) {
        result.outcome = Outcome::Refused; // "missing" may also be what a request meets that was carried out before
    }
    return result;
}

bool IsPropertyStored(const HttpResponse& response)
{
    return response.Status() == 207 ? AreAllSuccesses(InnerStatuses(response.body)) : response.HasSucceeded();
}

QByteArray LockTokenOf(const HttpResponse& response)
{
    const QByteArray field = response.head.Field("lock-token");
    // Some servers leave out the angle brackets.
    const QByteArray token = field.isEmpty() || field.startsWith('<') ? field : '<' + field + '>';
    const bool isLocked = response.Status() == 200 || response.Status() == 201;
    return isLocked && !token.isEmpty() && token.indexOf('>') == token.size() - 1 ? token : QByteArray();
}

std::chrono::seconds LockDurationOf(const HttpResponse& response)
{
    constexpr std::chrono::seconds wanted = std::chrono::minutes(1);
    const QByteArray unit = "Second-";
    const int begin = response.body.indexOf(unit);
    if (begin < 0) {
        return wanted;
    }
    const auto digits = response.body.mid(begin + unit.size(), 10);
    const auto end = std::find_if(digits.begin(), digits.end(), [](char digit) { return digit < '0' || digit > '9'; });
    const qlonglong granted = digits.left(static_cast<int>(end - digits.begin())).toLongLong();
    return granted > 0 ? std::min(wanted, std::chrono::seconds(granted)) : wanted;
}

bool IsMissing(int status)
{
    return status == 404 || status == 410;
}

} // namespace Norlis::Social

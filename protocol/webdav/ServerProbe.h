#pragma once

#include "Operation.h"

#include <deque>

namespace Norlis::Social {

/// Finds out what a server supports, by requests for two small temporary files, which are deleted afterwards.
class ServerProbe : public Operation {
public:
    ServerProbe(const std::shared_ptr<WebDavSession>& session, Finish finish);
    void Start() override;
    bool GiveUp() override;

private:
    struct Step {
        HttpRequest request;
        std::function<void(const HttpResponse& response)> onResponse;
    };

    void Plan();
    void TakeNextStep();
    void Note(const QString& capability, const QString& finding);

    /// In the server's own words, unless they are private.
    void NoteReported(const QString& capability, const QByteArray& reported);
    void OnCollection(const HttpResponse& response);
    void OnFile(const HttpResponse& response);
    void DeleteFiles(const std::function<void()>& done);

    const QByteArray first; ///< names of the files
    const QByteArray second;
    std::deque<Step> steps;
    std::optional<Reply> failure; ///< ends the probe
    ServiceCapabilities capabilities;
    Lifetime lifetime; ///< the files are deleted also after the end
};

} // namespace Norlis::Social

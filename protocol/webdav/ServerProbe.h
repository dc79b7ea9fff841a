#pragma once

#include "FileRequests.h"
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
    using OnResponse = std::function<void(const HttpResponse& response)>;

    struct Step {
        std::function<void(const OnResponse& done)> send;
        OnResponse onResponse;
    };

    Step Exchange(const HttpRequest& request, OnResponse onResponse);

    /// From the first name to the second.
    Step Rename(OnResponse onResponse);
    HttpRequest PutFirst(const QByteArray& body) const;
    void PlanLooks();
    void PlanFirstFile();
    void PlanSecondFile();
    void TakeNextStep();
    void Note(const QString& capability, const QString& finding);

    /// In the server's own words, unless they are private.
    void NoteReported(const QString& capability, const QByteArray& reported);
    void OnCollection(const HttpResponse& response);
    void OnUploaded(const HttpResponse& response);
    void OnFile(const HttpResponse& response);
    void OnRenamed(const HttpResponse& response);
    void DeleteFiles(const std::function<void()>& done);

    FileRequests files;
    QByteArray first; ///< names of the files
    QByteArray second;
    int moveStatus = 0;
    std::deque<Step> steps;
    std::optional<Reply> failure; ///< ends the probe
    ServiceCapabilities capabilities;
    Lifetime lifetime; ///< the files are deleted also after the end
};

} // namespace Norlis::Social

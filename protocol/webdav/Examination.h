#pragma once

#include "Operation.h"
#include "Sweeper.h"

#include <deque>

namespace Norlis::Social {

/// Finds out what a server is able to do, with two small temporary files that are gone afterwards.
class Examination : public Operation {
public:
    Examination(const std::shared_ptr<WebDavServer>& server, Sweeper& sweeper, Finish finish);
    void Start() override;
    bool GiveUp() override;

private:
    struct Step {
        HttpRequest request;
        std::function<void(const HttpResponse& response)> learn;
    };

    void Plan();
    void TakeNextStep();
    void Note(const QString& trait, const QString& finding);

    /// In the server's own words.
    void NoteTold(const QString& trait, const QByteArray& told);
    void LearnOfCollection(const HttpResponse& response);
    void LearnOfFile(const HttpResponse& response);
    void RemoveFiles(const std::function<void()>& done);

    Sweeper& sweeper;
    const QByteArray first; ///< names of the files
    const QByteArray second;
    std::deque<Step> steps;
    std::optional<Reply> problem; ///< ends the examination
    ServiceCapabilities traits;

    /// Held weakly by what may come after the end.
    const std::shared_ptr<bool> life = std::make_shared<bool>();
};

} // namespace Norlis::Social

#pragma once

#include "Operation.h"

namespace Norlis::Social {

/// Tries the token by a look at the collection, and learns what kind of server it is.
class SignInOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;

private:
    void OnResponse(const HttpResponse& response);

    /// Why the response is not about the collection.
    Reply NoCollection(const HttpResponse& response) const;
};

/// What is known about the user: from the server's user page if there is one, otherwise from the sign-in.
class UserOperation : public Operation {
public:
    enum class Wanted { Name, PictureAddress, Picture };

    UserOperation(Wanted wanted, const std::shared_ptr<WebDavSession>& session, Finish finish);
    void Start() override;

private:
    void OnUser(const HttpResponse& response);
    void FetchPicture(const QByteArray& url);

    const Wanted wanted;
};

} // namespace Norlis::Social

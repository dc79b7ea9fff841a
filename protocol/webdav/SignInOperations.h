#pragma once

#include "Operation.h"

#include <QImage>

namespace Norlis::Social {

/// Tries the token by a look at the collection, and learns what kind of server it is.
class SignInOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;

private:
    void OnResponse(const HttpResponse& response);
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

/// Decodes a picture that a server sent, PNG, JPEG or WebP, whatever type it claims. A null one when it is none of
/// these or too large to be decoded safely.
QImage PictureOf(const QByteArray& bytes);

} // namespace Norlis::Social

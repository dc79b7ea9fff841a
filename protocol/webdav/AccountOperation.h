#pragma once

#include "Operation.h"

#include <QImage>

namespace Norlis::Social {

/// What is known of the user: asked of the server's user page where there is one, else taken from the sign-in.
class AccountOperation : public Operation {
public:
    enum class Wanted { Name, PictureAddress, Picture };

    AccountOperation(Wanted wanted, const std::shared_ptr<WebDavServer>& server, Finish finish);
    void Start() override;

private:
    void OnUser(const HttpResponse& response);
    void FetchPicture(const QByteArray& url);

    const Wanted wanted;
};

/// A picture that a server sent, PNG, JPEG or WebP, whatever type it claims; a null one when it is none of these, or
/// too large to be decoded safely.
QImage PictureOf(const QByteArray& bytes);

} // namespace Norlis::Social

#pragma once

#include "Operation.h"

namespace Norlis::Social {

/// Proves the token by a look at the collection, and learns what the server says about itself.
class SignInOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;

private:
    void OnResponse(const HttpResponse& response);
};

} // namespace Norlis::Social

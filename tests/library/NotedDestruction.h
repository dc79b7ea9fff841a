#pragma once

#include <functional>

namespace Norlis::Test {

/// A double that tells when it is destroyed.
template <typename Base>
class NotedDestruction : public Base {
public:
    std::function<void()> destroyed;
    ~NotedDestruction() override
    {
        destroyed();
    }
};

} // namespace Norlis::Test

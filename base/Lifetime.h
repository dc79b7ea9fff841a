#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace Norlis {

/// Tells what comes back later whether the object that it means still lives. A member of that object:
///
///     connection.Ask([this, guard = lifetime.Watch()](Answer answer) {
///         if (guard) { Use(answer); }
///     });
///
/// Declared as the last member it ends first, so that nothing is called while the others are destroyed. An object that
/// may be called from within its own destructor's body calls End() there. Unlike a QPointer it needs no QObject, and is
/// expired from that moment on and not only when the base class is destroyed.
///
/// Guards may be copied and destroyed on any thread; they are asked on the object's own.
class Lifetime {
public:
    class Guard {
    public:
        explicit operator bool() const
        {
            return !token.expired();
        }

    private:
        friend class Lifetime;
        explicit Guard(const std::shared_ptr<char>& token) : token(token) {}

        std::weak_ptr<char> token;
    };

    Lifetime() = default;
    Lifetime(const Lifetime&) = delete; // a copy is another object
    Lifetime& operator=(const Lifetime&) = delete;

    Guard Watch() const
    {
        return Guard(token);
    }

    /// Expires all guards at once.
    void End()
    {
        token.reset();
    }

private:
    std::shared_ptr<char> token = std::make_shared<char>();
};

/// Calls a function for the only time. It is taken out of its place first, because it may destroy the object that holds
/// it. An empty one is not called.
template <typename... Parameters, typename... Arguments>
void CallOnce(std::function<void(Parameters...)>& function, Arguments&&... arguments)
{
    if (const auto taken = std::exchange(function, nullptr)) {
        taken(std::forward<Arguments>(arguments)...);
    }
}

} // namespace Norlis

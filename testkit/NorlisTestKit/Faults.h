#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Norlis::TestKit {

/// Which calls a fault affects: by default the next one of an operation.
///
///     When("SetValue")                     the next call of SetValue
///     When("SetValue", "file_name")        the next one with that in its arguments
///     When("PUT").From(2).Times(3)         the second, third and fourth
///     When("*").Always()                   all calls of whatever operation
struct When {
    /// As often as it is called.
    static constexpr int always = std::numeric_limits<int>::max();

    /// \param operation   name of a function, or of an HTTP method; "*" is any
    /// \param inArguments a part of the arguments, as the collaborator writes them; for a server, of the request's
    /// target
    /*implicit*/ When(const char* operation, const QByteArray& inArguments = {})
        : operation(operation),
          inArguments(inArguments)
    {
    }

    /// From the n-th of these calls on, counted from 1 and from when the fault was added; those before succeed.
    When& From(int number)
    {
        from = number;
        return *this;
    }

    /// That many calls, one after the other.
    When& Times(int number)
    {
        times = number;
        return *this;
    }

    /// All of them, from the first or the one given to From.
    When& Always()
    {
        return Times(always);
    }

    QByteArray operation;   ///< "*" is any
    QByteArray inArguments; ///< empty is any
    int from = 1;           ///< number of the first call
    int times = 1;          ///< how many calls
};

/// The faults that a collaborator was told to have. Used by one thread at a time.
template <typename Fault>
class Faults {
public:
    /// \param operations all that the collaborator has; empty when any may come
    explicit Faults(QByteArrayList operations = {}) : operations(std::move(operations)) {}

    /// Of several faults for one call the first that was added acts, and those after it do not count the call. Throws
    /// std::invalid_argument for what can never happen: an operation that does not exist, a call before the first.
    void Add(const When& when, Fault fault)
    {
        if (when.operation != "*" && !operations.isEmpty() && !operations.contains(when.operation)) {
            throw std::invalid_argument("No operation " + when.operation.toStdString() + "; there are " +
                                        operations.join(", ").toStdString());
        }
        if (when.from < 1 || when.times < 1) {
            throw std::invalid_argument("Calls are counted from 1");
        }
        rules.push_back({when, std::move(fault), 0});
    }

    /// Forgets all faults.
    void Clear()
    {
        rules.clear();
    }

    /// Counts a call and returns its fault, if it has one.
    std::optional<Fault> Claim(const QByteArray& operation, const QByteArray& arguments)
    {
        for (Rule& rule : rules) {
            const When& when = rule.when;
            if ((when.operation != "*" && when.operation != operation) || !arguments.contains(when.inArguments)) {
                continue;
            }
            ++rule.seen;
            if (rule.seen >= when.from && rule.seen - when.from < when.times) {
                return rule.fault;
            }
        }
        return {};
    }

private:
    struct Rule {
        When when;
        Fault fault;
        int seen; ///< calls that matched
    };

    QByteArrayList operations;
    std::vector<Rule> rules;
};

} // namespace Norlis::TestKit

#pragma once

#include <tests/support/Rounds.h>

#include "Gone.h"

#include <NorlisTestKit/Journal.h>

#include <QByteArray>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace Norlis::Test {

/// What happened in one step of a history, one line per event.
using Trace = std::vector<std::string>;

/// An action, and what else is done inside the signals and calls that it brings about, counted from 0.
template <typename Action>
struct Step {
    Action action;
    std::map<int, Action> inside;
};

template <typename Action>
std::ostream& operator<<(std::ostream& stream, const Step<Action>& step)
{
    stream << "\n  " << step.action;
    for (const auto& [moment, action] : step.inside) {
        stream << "\n      inside event " << moment << ": " << action;
    }
    return stream;
}

/// A number from 0 on, every second one 0 or 1: actions that concern the same thing are the interesting ones.
inline rc::Gen<int> AnyBelow(int count)
{
    return rc::gen::resize(rc::kNominalSize, rc::gen::oneOf(rc::gen::inRange(0, 2), rc::gen::inRange(0, count)));
}

template <typename Action>
using History = std::vector<Step<Action>>;

template <typename Action>
rc::Gen<History<Action>> AnyHistory(const rc::Gen<Action>& anyAction)
{
    using Inside = std::map<int, Action>;
    const auto some = rc::gen::container<Inside>(2, AnyBelow(5), anyAction);
    const auto inside = rc::gen::weightedOneOf<Inside>({{1, rc::gen::just(Inside())}, {1, some}});
    const auto step = rc::gen::build<Step<Action>>(rc::gen::set(&Step<Action>::action, anyAction),
                                                   rc::gen::set(&Step<Action>::inside, inside));
    return rc::gen::scale(0.4, rc::gen::container<History<Action>>(step));
}

/// Plays histories and writes down what happens. What is tested has one driver, its model another.
template <typename Action>
class Driver {
public:
    virtual ~Driver() = default;

    std::vector<Trace> Play(const History<Action>& history)
    {
        std::vector<Trace> traces;
        Begin();
        for (const Step<Action>& step : history) {
            inside = step.inside;
            moment = 0;
            Act(step.action);
            traces.push_back(EndOfStep());
        }
        inside.clear();
        Finish();
        traces.push_back(EndOfStep());
        return traces;
    }

protected:
    virtual void Do(const Action& action) = 0;

    virtual void Begin() = 0;
    virtual void Finish() = 0;

    /// What can be seen from outside after a step.
    virtual Trace State() = 0;

    /// Does an action, and writes down what it throws.
    void Act(const Action& action)
    {
        try {
            Do(action);
        } catch (const Gone&) {
            // the operation ended with its object
        } catch (const std::exception& thrown) {
            journal->Write(std::string("throws ") + thrown.what());
        }
    }

    /// A signal or a call is under way: does what is to be done inside.
    void Moment()
    {
        const auto due = inside.find(moment++);
        if (due != inside.end()) {
            const Action action = due->second;
            Act(action);
        }
    }

    const std::shared_ptr<TestKit::Journal> journal = std::make_shared<TestKit::Journal>();

private:
    Trace EndOfStep()
    {
        Trace trace = journal->Take();
        const Trace state = State();
        trace.insert(trace.end(), state.begin(), state.end());
        return trace;
    }

    std::map<int, Action> inside;
    int moment = 0;
};

/// Lets log records go to sinks alone; a million of them would fill the terminal.
void KeepLogFromTerminal();

/// Checks a property, a function that takes what it is to be checked with, by that many random cases, and shrinks a
/// case that fails. Unless the run is thorough it is a third of them. The cases are the same in every run unless
/// RC_PARAMS in the environment names another seed; max_success in it overrides their number.
template <typename Property>
void CheckRandomly(const Property& property, int cases)
{
    KeepLogFromTerminal();
    if (!qEnvironmentVariableIsSet("RC_PARAMS")) {
        qputenv("RC_PARAMS", "seed=1");
    }
    auto parameters = rc::detail::configuration().testParams;
    if (!qgetenv("RC_PARAMS").contains("max_success")) {
        parameters.maxSuccess = IsThorough() ? cases : cases / 3;
    }
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    rc::detail::TestMetadata metadata;
    metadata.id = std::string(test->test_suite_name()) + '/' + test->name();
    metadata.description = test->name();
    const auto result = rc::detail::checkProperty(rc::detail::toProperty(property), metadata, parameters);
    if (!result.template is<rc::detail::SuccessResult>()) {
        std::ostringstream text;
        rc::detail::printResultMessage(result, text);
        ADD_FAILURE() << text.str();
    }
}

/// Empty when both traces are the same, else the first step in which they differ, written out.
std::string Difference(const std::vector<Trace>& expected, const std::vector<Trace>& actual);

/// Plays random histories on two drivers and compares what is seen of each. The functions make a new driver each.
template <typename Actions, typename Library, typename Model>
void CompareRandomly(const Actions& actions, const Library& library, const Model& model, int cases = 1000)
{
    CheckRandomly(
        [&] {
            const auto history = *AnyHistory(actions);
            const auto actual = library()->Play(history);
            const auto expected = model()->Play(history);
            const std::string difference = Difference(expected, actual);
            if (!difference.empty()) {
                RC_FAIL(difference);
            }
        },
        cases);
}

} // namespace Norlis::Test

#pragma once

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

/// A deed, and what else is done inside the signals and calls that it brings about, counted from 0.
template <typename Deed>
struct Step {
    Deed deed;
    std::map<int, Deed> inside;
};

template <typename Deed>
std::ostream& operator<<(std::ostream& stream, const Step<Deed>& step)
{
    stream << "\n  " << step.deed;
    for (const auto& [moment, deed] : step.inside) {
        stream << "\n      inside event " << moment << ": " << deed;
    }
    return stream;
}

/// A number from 0 on, every second one 0 or 1: deeds that concern the same thing are the interesting ones.
inline rc::Gen<int> AnyBelow(int count)
{
    return rc::gen::resize(rc::kNominalSize, rc::gen::oneOf(rc::gen::inRange(0, 2), rc::gen::inRange(0, count)));
}

template <typename Deed>
using History = std::vector<Step<Deed>>;

template <typename Deed>
rc::Gen<History<Deed>> AnyHistory(const rc::Gen<Deed>& anyDeed)
{
    using Inside = std::map<int, Deed>;
    const auto some = rc::gen::container<Inside>(2, AnyBelow(5), anyDeed);
    const auto inside = rc::gen::weightedOneOf<Inside>({{1, rc::gen::just(Inside())}, {1, some}});
    const auto step =
        rc::gen::build<Step<Deed>>(rc::gen::set(&Step<Deed>::deed, anyDeed), rc::gen::set(&Step<Deed>::inside, inside));
    return rc::gen::scale(0.4, rc::gen::container<History<Deed>>(step));
}

/// Plays histories and writes down what happens. What is tested has one stage, its model another.
template <typename Deed>
class Stage {
public:
    virtual ~Stage() = default;

    std::vector<Trace> Play(const History<Deed>& history)
    {
        std::vector<Trace> traces;
        Begin();
        for (const Step<Deed>& step : history) {
            inside = step.inside;
            moment = 0;
            Act(step.deed);
            traces.push_back(EndOfStep());
        }
        inside.clear();
        Finish();
        traces.push_back(EndOfStep());
        return traces;
    }

protected:
    virtual void Do(const Deed& deed) = 0;

    virtual void Begin() = 0;
    virtual void Finish() = 0;

    /// What can be seen from outside after a step.
    virtual Trace State() = 0;

    /// Does a deed, and writes down what it throws.
    void Act(const Deed& deed)
    {
        try {
            Do(deed);
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
            const Deed deed = due->second;
            Act(deed);
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

    std::map<int, Deed> inside;
    int moment = 0;
};

/// Lets log records go to sinks alone; a million of them would fill the terminal.
void KeepLogFromTerminal();

/// Checks a property, a function that takes what it is to be checked with, by that many random cases, and shrinks a
/// case that fails. The cases are the same in every run unless RC_PARAMS in the environment
/// names another seed; max_success in it overrides their number.
template <typename Property>
void CheckRandomly(const Property& property, int cases)
{
    KeepLogFromTerminal();
    if (!qEnvironmentVariableIsSet("RC_PARAMS")) {
        qputenv("RC_PARAMS", "seed=1");
    }
    auto parameters = rc::detail::configuration().testParams;
    if (!qgetenv("RC_PARAMS").contains("max_success")) {
        parameters.maxSuccess = cases;
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

/// Plays random histories on two stages and compares what is seen of each. The functions make a new stage each.
template <typename Deeds, typename Library, typename Model>
void CompareRandomly(const Deeds& deeds, const Library& library, const Model& model, int cases = 1000)
{
    CheckRandomly(
        [&] {
            const auto history = *AnyHistory(deeds);
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

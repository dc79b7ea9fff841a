#include "Histories.h"

#include <glog/logging.h>

#include <algorithm>

namespace Norlis::Test {

namespace {

std::string Indented(const Trace& trace)
{
    std::string text;
    for (const auto& line : trace) {
        text += "\n    " + line;
    }
    return text;
}

} // namespace

void KeepLogFromTerminal()
{
    FLAGS_logtostderr = false;
    FLAGS_stderrthreshold = google::GLOG_FATAL;
    for (int severity = google::GLOG_INFO; severity <= google::GLOG_ERROR; ++severity) {
        google::SetLogDestination(severity, "");
    }
}

std::string Difference(const std::vector<Trace>& expected, const std::vector<Trace>& actual)
{
    for (std::size_t step = 0; step < std::max(expected.size(), actual.size()); ++step) {
        Trace wanted = step < expected.size() ? expected[step] : Trace();
        Trace found = step < actual.size() ? actual[step] : Trace();
        if (wanted == found) {
            continue;
        }
        while (!wanted.empty() && !found.empty() && wanted.back() == found.back()) {
            wanted.pop_back();
            found.pop_back();
        }
        return "In step " + std::to_string(step) + " the model does" + Indented(wanted) + "\nand what is tested does" +
               Indented(found);
    }
    return {};
}

} // namespace Norlis::Test

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Norlis::TestKit {

/// What happened, in order, one line of text per event. Collaborators that share a journal show the order in which they
/// were used. Used on one thread.
class Journal {
public:
    /// Adds a line at the end.
    void Write(const std::string& line)
    {
        lines.push_back(line);
    }

    /// The lines since the last call.
    std::vector<std::string> Take()
    {
        return std::exchange(lines, {});
    }

private:
    std::vector<std::string> lines;
};

} // namespace Norlis::TestKit

#pragma once

namespace Norlis::Window {

/// What the list shows of a document, from the left; documents can be sorted by each.
enum class Column { Name, Folder, State, Size, Modified };

constexpr int columnCount = 5;

constexpr int columnInset = 6; ///< of what stands in a column
constexpr int badgeEdge = 22;  ///< of the picture of a state

} // namespace Norlis::Window

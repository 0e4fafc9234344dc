#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::cli {

// The width of the terminal open as `descriptor`; nothing when it is not a terminal.
std::optional<std::size_t> terminalColumns(int descriptor);

// `text` cut to `columns` code points, by taking out its middle for "…" (the start and end of
// a path say the most).
std::string fitted(std::string_view text, std::size_t columns);

// `text` with each line longer than `columns` code points broken at spaces, its continuation
// lines indented like the line they continue; a word longer than a line is left whole.
std::string wrapped(std::string_view text, std::size_t columns);

// `text` wrapped to the width of standard output when that is a terminal; as it is otherwise,
// so that what a script reads does not depend on a window's size.
std::string forStandardOutput(std::string text);

}  // namespace tallowmere::cli

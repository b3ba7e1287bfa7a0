#pragma once

#include <QString>
#include <string_view>

namespace ulvak {

/// A text that may hold names from the disk, for the window: valid, on one line, without control characters.
[[nodiscard]] QString shown(std::string_view text);

/// The same for a text of several lines, without blank ones at its end.
[[nodiscard]] QString shownLines(std::string_view text);

}  // namespace ulvak

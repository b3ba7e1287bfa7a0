#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ulvak {

/// A text that may hold names from the disk, for the window: valid, on one line, without control characters.
/// Everything in this file is safe from any thread.
[[nodiscard]] QString shown(std::string_view text);

/// The same for a text of several lines, without blank ones at its end.
[[nodiscard]] QString shownLines(std::string_view text);

/// A finding's id for a view, which hands it back unread. An id is bytes that need not be a text, and two
/// that are shown alike stay two.
[[nodiscard]] QString idText(std::string_view id);
[[nodiscard]] std::string idOf(const QString& findingId);

}  // namespace ulvak

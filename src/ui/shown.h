#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ulvak {

/// Makes text that may contain names from the disk fit for display: valid, single-line, no control
/// characters. All functions in this file are thread-safe.
[[nodiscard]] QString shown(std::string_view text);

/// The same for multi-line text; drops trailing blank lines.
[[nodiscard]] QString shownLines(std::string_view text);

/// A finding's id as an opaque string for views. Ids are arbitrary bytes; distinct ids stay distinct even if
/// they would display alike.
[[nodiscard]] QString idText(std::string_view id);
[[nodiscard]] std::string idOf(const QString& findingId);

}  // namespace ulvak

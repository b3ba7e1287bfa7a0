#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Makes text from the disk and from a model fit for one line. Such text is not trusted: it is quoted, and
/// must not look like something the program or its user says. Characters are Unicode code points; all results
/// are UTF-8. Thread-safe.
namespace ulvak::FactText {

inline constexpr std::size_t maxNameLength = 255;
inline constexpr std::size_t maxPathLength = 1024;

[[nodiscard]] std::size_t characterCount(std::string_view text);

/// At most `count` characters; a cut is marked by "…" as the last one.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t count);

/// A file or folder name: no control characters, no double quotation marks of any kind, at most
/// `maxNameLength` characters.
[[nodiscard]] std::string name(std::string_view bytes);

/// The same for a path. A long one is shortened in the middle.
[[nodiscard]] std::string path(std::string_view bytes);

/// The beginning of a small text file: line breaks become spaces, leading and trailing spaces and tabs are
/// dropped, and the first `count` characters are kept. Empty if nothing readable is left. `before` precedes
/// it on its line: together, the two must not sound like the user either.
[[nodiscard]] std::string excerpt(std::string_view bytes, std::size_t count, std::string_view before = {});

/// A model's text on one line, at most `count` characters.
[[nodiscard]] std::string answer(std::string_view text, std::size_t count);

/// Without leading and trailing white space and line breaks, including Unicode's; otherwise unchanged.
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace ulvak::FactText

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Pieces of text from the disk and from a model, made fit to stand on one line. They are not trusted: what
/// they say is quoted, and must not look like something that the program or its user says. Characters are
/// Unicode code points; all results are UTF-8. Safe from any thread.
namespace ulvak::FactText {

inline constexpr std::size_t maxNameLength = 255;
inline constexpr std::size_t maxPathLength = 1024;

[[nodiscard]] std::size_t characterCount(std::string_view text);

/// At most `count` characters, and what was cut off shown by "…" as the last of them.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t count);

/// The name of a file or folder: no control characters, no double quotation marks of any shape, at most
/// `maxNameLength` characters.
[[nodiscard]] std::string name(std::string_view bytes);

/// The same for a path. A long one loses its middle.
[[nodiscard]] std::string path(std::string_view bytes);

/// What a small text file begins with: line feeds and carriage returns become blanks, blanks and tabs at both
/// ends go, and the first `count` characters remain. Empty when nothing readable does. `before` is what
/// stands before it on its line: the two together must not sound like the user either.
[[nodiscard]] std::string excerpt(std::string_view bytes, std::size_t count, std::string_view before = {});

/// What a model wrote, on one line, at most `count` characters.
[[nodiscard]] std::string answer(std::string_view text, std::size_t count);

/// Without white space and line breaks at both ends, Unicode's included; otherwise as it is.
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace ulvak::FactText

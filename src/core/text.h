#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// Text from the disk and for people. Names on disk are bytes and need not be UTF-8. Locale-independent.
/// Input beyond 2 GiB is ignored. Thread-safe.
namespace ulvak {

/// Language-independent Unicode lower-casing: "I" becomes "i" for a Turkish user too. Invalid UTF-8 becomes
/// U+FFFD.
[[nodiscard]] std::string lowerCased(std::string_view text);

/// `text` as valid UTF-8; each invalid sequence becomes U+FFFD.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// `text` as one line of valid UTF-8 that is safe to print on a terminal: invalid sequences, control
/// characters, line and paragraph separators, and bidirectional control characters each become U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

/// Only the letters of `text`, with case, width and style folded, to find words however they are spaced out
/// or decorated. O(n).
[[nodiscard]] std::string plainLetters(std::string_view text);

/// Whether a byte is an ASCII letter or digit, or part of a character beyond ASCII.
[[nodiscard]] bool isWordByte(char c);

/// Lower-cased, without what separates words: how names are compared that are written in several ways. The
/// key of "virt-manager" and "Virt Manager" is "virtmanager".
[[nodiscard]] std::string nameKey(std::string_view name);

/// Whether nothing in `text` is visible: only whitespace, characters without a glyph, and invalid UTF-8.
[[nodiscard]] bool isBlank(std::string_view text);

/// The first `count` characters of valid UTF-8, padded with spaces on the right.
[[nodiscard]] std::string paddedOrCut(std::string_view text, std::size_t count);

/// Joins names with ", ".
[[nodiscard]] std::string joined(std::span<const std::string> names);

/// Replaces every occurrence of `what` (must not be empty) in `text`, left to right.
[[nodiscard]] std::string replacedAll(std::string_view text, std::string_view what, std::string_view with);

}  // namespace ulvak

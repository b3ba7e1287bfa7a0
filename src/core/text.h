#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// Text from the disk and for people. Names on disk are bytes and need not be UTF-8. Nothing here depends
/// on the user's locale. Of more than 2 GiB only so much is read. Safe from any thread.
namespace ulvak {

/// Unicode lower-casing without a language: "I" becomes "i" for a Turkish user too. What is not UTF-8
/// comes out as U+FFFD.
[[nodiscard]] std::string lowerCased(std::string_view text);

/// `text` as valid UTF-8: each piece that is none comes out as U+FFFD.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// `text` as valid UTF-8 on one line that does nothing to a terminal: bytes that are not UTF-8, control
/// characters, line and paragraph separators, and the marks that turn the writing direction each come out
/// as U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

/// The letters of `text` alone, without their case, width and style, for finding words however they are
/// spaced out or dressed up. Takes time in proportion to the length.
[[nodiscard]] std::string plainLetters(std::string_view text);

/// Whether nothing of `text` can be seen: blanks, characters without a glyph, and what is not UTF-8.
[[nodiscard]] bool isBlank(std::string_view text);

/// The first `count` characters of valid UTF-8, filled up with blanks on the right.
[[nodiscard]] std::string paddedOrCut(std::string_view text, std::size_t count);

/// Names one after the other, with a comma and a blank between two.
[[nodiscard]] std::string joined(std::span<const std::string> names);

/// Every occurrence of `what` (not empty) in `text` replaced, from left to right.
[[nodiscard]] std::string replacedAll(std::string_view text, std::string_view what, std::string_view with);

}  // namespace ulvak

#pragma once

#include <string_view>

namespace ulvak {

struct GlobOptions {
    /// "*", "?" and "[…]" do not match a "/".
    bool pathname = false;
    /// Case-insensitive for A to Z only: what a rule matches must not depend on the user's language.
    bool ignoreCase = false;
};

/// Whether a shell-style pattern ("*", "?", "[abc]", "[a-z]", "[!a]", "\" to escape any character) matches
/// the whole text, byte by byte. A leading dot is not special. Agrees with POSIX `fnmatch` in the C locale,
/// except that character classes ("[:alpha:]") are not supported. An unclosed "[" is literal. O(pattern ×
/// text) at worst. Thread-safe.
[[nodiscard]] bool globMatches(std::string_view pattern, std::string_view text, GlobOptions options = {});

}  // namespace ulvak

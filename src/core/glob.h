#pragma once

#include <string_view>

namespace ulvak {

struct GlobOptions {
    /// "*", "?" and "[…]" do not match a "/".
    bool pathname = false;
    /// The letters A to Z match whatever their case. Only those: what a rule names must not depend on the
    /// user's language.
    bool ignoreCase = false;
};

/// Whether a shell-style pattern ("*", "?", "[abc]", "[a-z]", "[!a]", "\" before any character) matches
/// the whole text, byte by byte; a leading dot is nothing special. Agrees with POSIX `fnmatch` in the C
/// locale, except that named classes inside brackets ("[:alpha:]") are not known. A "[" that is never
/// closed stands for itself. Time is at most proportional to the product of both lengths. Safe from any
/// thread.
[[nodiscard]] bool globMatches(std::string_view pattern, std::string_view text, GlobOptions options = {});

}  // namespace ulvak

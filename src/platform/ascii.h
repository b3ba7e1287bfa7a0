#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Bytes of UTF-8 without a table and without the user's language. Safe from any thread.
namespace ulvak::platform {

/// Lower case for the letters A to Z alone; every other byte stays as it is.
[[nodiscard]] constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

[[nodiscard]] inline std::string lowerAscii(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return lowerAscii(c); });
    return lower;
}

/// Whether a byte goes on with a character that an earlier one has begun.
[[nodiscard]] constexpr bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace ulvak::platform

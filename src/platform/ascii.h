#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// UTF-8 bytes, without tables and independent of the user's language. Thread-safe.
namespace ulvak::platform {

/// Lower-cases A to Z only; every other byte is unchanged.
[[nodiscard]] constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

[[nodiscard]] inline std::string lowerAscii(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return lowerAscii(c); });
    return lower;
}

/// Whether a byte is a UTF-8 continuation byte.
[[nodiscard]] constexpr bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace ulvak::platform

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ulvak {

/// How specific a pattern is, component by component: compared from left to right, the greater one is more
/// specific.
using Specificity = std::vector<std::uint16_t>;

/// Of a component without wildcards; greater than any with.
inline constexpr std::uint16_t literalSpecificity = 0xFFFF;
/// The most of a component that matches nearly everything: "*" is 0, "[!.]*" and ".*" are no better.
inline constexpr std::uint16_t wideSpecificity = 2;

/// Of one component: literal, or else by the number of its literal characters.
[[nodiscard]] std::uint16_t componentSpecificity(std::string_view component);

/// Of a pattern's components; the token or "/" it begins with is not one.
[[nodiscard]] Specificity specificity(std::string_view pattern);

/// The components of what follows a folder's path: none of "", "a" and "b" of "/a/b".
[[nodiscard]] std::vector<std::string_view> components(std::string_view rest);

}  // namespace ulvak

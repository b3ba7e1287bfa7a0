#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace ulvak {

/// A JSON number as an integer, however it is written: 5, 5.0 and 5e0 are the same. Returns nullopt for
/// anything that is not an integer or does not fit. `Json` is one of nlohmann's types.
template <typename Json>
[[nodiscard]] std::optional<std::int64_t> jsonInteger(const Json& value) {
    if (value.is_number_unsigned()) {
        const auto number = value.template get<std::uint64_t>();
        return number <= std::uint64_t{INT64_MAX} ? std::optional(static_cast<std::int64_t>(number))
                                                  : std::nullopt;
    }
    if (value.is_number_integer())
        return value.template get<std::int64_t>();
    if (!value.is_number_float())
        return std::nullopt;
    const auto number = value.template get<double>();
    // 2^63, the first value that does not fit. -2^63 would, but as a double it may stand for a smaller
    // number.
    constexpr double limit = 9223372036854775808.0;
    if (!(std::abs(number) < limit) || std::trunc(number) != number)
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

}  // namespace ulvak

#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/safety_level.h"

namespace ulvak {

/// Who gave a verdict.
enum class VerdictSource : std::uint8_t {
    rule,       ///< the built-in rule book
    ai,         ///< the language model on this machine
    heuristic,  ///< a guess from the folder's name
    user,       ///< set by hand
};

inline constexpr std::array allVerdictSources = {VerdictSource::rule, VerdictSource::ai,
                                                 VerdictSource::heuristic, VerdictSource::user};

/// Everything shown of a source.
struct VerdictSourceInfo {
    VerdictSource source = VerdictSource::rule;
    std::string_view rawValue;  ///< in JSON
    std::string_view label;     ///< Turkish
    std::string_view symbol;    ///< name of a symbol image
};

[[nodiscard]] const VerdictSourceInfo& info(VerdictSource source);

/// The source with exactly this raw value, case-sensitive.
[[nodiscard]] std::optional<VerdictSource> verdictSource(std::string_view rawValue);

/// A judgement of one folder or file.
struct Verdict {
    SafetyLevel level = SafetyLevel::unknown;
    std::string title;        ///< what the item is, in a few words
    std::string explanation;  ///< what it contains and what happens if it is deleted
    VerdictSource source = VerdictSource::rule;
    /// Set only by a model. We write 0 to 100; a value read from a file is kept as is.
    std::optional<std::int64_t> confidence;

    friend bool operator==(const Verdict&, const Verdict&) = default;
};

/// The text of the source badge: the label, then the confidence if there is one, Turkish style: " %85".
[[nodiscard]] std::string badgeText(const Verdict& verdict);

/// The only decoding error: a key is missing, has the wrong type, or holds an unknown raw value.
struct DataCorrupted {
    std::string what;  ///< for developers, English
};

}  // namespace ulvak

template <>
struct std::hash<ulvak::Verdict> {
    std::size_t operator()(const ulvak::Verdict& verdict) const noexcept;
};

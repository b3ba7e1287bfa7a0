#pragma once

#include <QString>
#include <cstdint>
#include <string_view>

#include "core/finding.h"

/// Texts that several parts of the window show. Safe from any thread.
namespace ulvak::Texts {

/// One of our own texts.
[[nodiscard]] QString fixed(std::string_view text);
/// "9,1 GB".
[[nodiscard]] QString bytes(std::int64_t count);
/// "1.234.567".
[[nodiscard]] QString number(std::int64_t value);
/// Of a duration; what is over is cut off.
[[nodiscard]] QString wholeSeconds(double seconds);
/// Of the source badge; empty for a rule's verdict, which shows none.
[[nodiscard]] QString badge(const Finding& finding);
/// The confidence at the end of that, "%85"; empty where there is none.
[[nodiscard]] QString confidence(const Finding& finding);

}  // namespace ulvak::Texts

#pragma once

#include <QString>
#include <cstdint>
#include <string_view>

#include "core/finding.h"

/// Texts shared by several parts of the window. Thread-safe.
namespace ulvak::Texts {

/// One of our own literals.
[[nodiscard]] QString fixed(std::string_view text);
/// "9,1 GB".
[[nodiscard]] QString bytes(std::int64_t count);
/// "1.234.567".
[[nodiscard]] QString number(std::int64_t value);
/// A duration, truncated to whole seconds.
[[nodiscard]] QString wholeSeconds(double seconds);
/// The source badge's text; empty for a rule's verdict, which has none.
[[nodiscard]] QString badge(const Finding& finding);
/// The confidence that ends the badge, "%85"; may be empty.
[[nodiscard]] QString confidence(const Finding& finding);

}  // namespace ulvak::Texts

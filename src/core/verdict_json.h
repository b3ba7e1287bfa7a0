#pragma once

#include <expected>

#include <nlohmann/json_fwd.hpp>

#include "core/verdict.h"

namespace ulvak {

/// An object with the keys level, title, explanation, source and, only if present, confidence, in that order.
/// Invalid UTF-8 becomes U+FFFD.
[[nodiscard]] nlohmann::ordered_json toJson(const Verdict& verdict);

/// Ignores other keys; a null confidence means none.
[[nodiscard]] std::expected<Verdict, DataCorrupted> verdictFromJson(const nlohmann::ordered_json& json);

}  // namespace ulvak

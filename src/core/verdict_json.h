#pragma once

#include <expected>

#include <nlohmann/json_fwd.hpp>

#include "core/verdict.h"

namespace ulvak {

/// An object with the keys level, title, explanation, source and, only when there is one, confidence, in
/// that order. Bytes of a name that are not UTF-8 come out as U+FFFD.
[[nodiscard]] nlohmann::ordered_json toJson(const Verdict& verdict);

/// Other keys are ignored; a confidence that is null is absent.
[[nodiscard]] std::expected<Verdict, DataCorrupted> verdictFromJson(const nlohmann::ordered_json& json);

}  // namespace ulvak

#pragma once

#include <optional>
#include <stop_token>
#include <string>

#include "platform/language_model.h"

namespace ulvak {

/// Whether the language model can be used now and, if not, why.
struct AIStatus {
    /// nullopt if requests can be made; otherwise the reason in Turkish, ready to show.
    std::optional<std::string> unavailable;
    /// What the user can do: one Turkish sentence or none, safe for a terminal. Not part of the status
    /// itself.
    std::string hint;
    /// Nobody answered in time. Says nothing new about a model that was available before.
    bool isSilent = false;

    [[nodiscard]] bool isAvailable() const { return !unavailable; }

    /// `available`, or `unavailable("…")`.
    [[nodiscard]] std::string plainText() const;

    /// Queries the model anew. Blocks while looking for servers, a few seconds at worst. Thread-safe.
    [[nodiscard]] static AIStatus current(const platform::LanguageModel& model, std::stop_token stop = {});

    friend bool operator==(const AIStatus& a, const AIStatus& b) { return a.unavailable == b.unavailable; }
};

}  // namespace ulvak

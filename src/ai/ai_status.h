#pragma once

#include <optional>
#include <stop_token>
#include <string>

#include "platform/language_model.h"

namespace ulvak {

/// Whether the language model can be used now and, if not, why.
struct AIStatus {
    /// Absent when requests may be made; otherwise the reason in Turkish, ready to show.
    std::optional<std::string> unavailable;
    /// What the user can do, one Turkish sentence or none, fit for a terminal. Beside the status, not part
    /// of it.
    std::string hint;
    /// Nobody has answered in time. That says nothing new about a model which was available before.
    bool isSilent = false;

    [[nodiscard]] bool isAvailable() const { return !unavailable; }

    /// `available`, or `unavailable("…")`.
    [[nodiscard]] std::string plainText() const;

    /// Asks anew. Blocks while servers are looked for, a few seconds at the very worst. Safe from any thread.
    [[nodiscard]] static AIStatus current(const platform::LanguageModel& model, std::stop_token stop = {});

    friend bool operator==(const AIStatus& a, const AIStatus& b) { return a.unavailable == b.unavailable; }
};

}  // namespace ulvak

#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <stop_token>
#include <string>

/// A language model on this machine. What it is given never leaves the machine, and what it says is not
/// trusted.
namespace ulvak::platform {

enum class ModelAbsenceReason : std::uint8_t {
    deviceNotEligible,  ///< also: the server that the user names is not on this machine
    notEnabled,         ///< switched off
    notReady,           ///< still being loaded or downloaded
    other,              ///< also: there is no server
};

/// Why no request can be made now.
struct ModelAbsence {
    ModelAbsenceReason reason = ModelAbsenceReason::other;
    /// What the user can do about it, in Turkish; empty when there is nothing to say beyond the reason. May
    /// quote what a server said: make it `printable`.
    std::string detail;
    /// Somebody listens and has not answered in time: it may be busy, and was it there before, it still is.
    bool isSilent = false;
};

struct ModelRequest {
    std::string instructions;
    std::string prompt;
    std::string answerName;    ///< what the schema is called
    std::string answerSchema;  ///< a JSON schema; the model is shown it, and its answer is held to it
    double temperature = 0.2;  ///< the one option that is set; sampling and length are left to the model

    friend bool operator==(const ModelRequest&, const ModelRequest&) = default;
};

struct ModelError {
    enum class Kind : std::uint8_t {
        guardrailViolation,   ///< the model's safety filter
        refusal,              ///< the model itself declines
        unsupportedLanguage,  ///< language or locale
        other,
    };
    /// A service may report its errors in two families that are dealt with differently.
    enum class Family : std::uint8_t { model, session };

    Kind kind = Kind::other;
    Family family = Family::model;
    /// For people: what failed, and the service's own words. Not trusted: make it `printable`. At most
    /// `maxTextLength` bytes.
    std::string text;
    /// Nobody answered in time, as in `ModelAbsence`.
    bool isSilent = false;

    static constexpr std::size_t maxTextLength = 2'000;

    friend bool operator==(const ModelError&, const ModelError&) = default;
};

/// Threads: any, several at once. Calls block; a stop ends them at once, with an error.
class LanguageModel {
public:
    LanguageModel() = default;
    virtual ~LanguageModel() = default;
    LanguageModel(const LanguageModel&) = delete;
    LanguageModel& operator=(const LanguageModel&) = delete;

    /// Nothing when requests can be made.
    [[nodiscard]] virtual std::optional<ModelAbsence> absence(std::stop_token stop = {}) const = 0;

    /// One request in a session of its own; nothing is kept for the next. The answer is JSON, which the
    /// service has promised to hold to the schema.
    [[nodiscard]] virtual std::expected<std::string, ModelError> respond(const ModelRequest& request,
                                                                         std::stop_token stop = {}) const = 0;
};

/// The system's own; null where it has none. Costs nothing until it is asked something.
[[nodiscard]] const LanguageModel* systemLanguageModel();

}  // namespace ulvak::platform

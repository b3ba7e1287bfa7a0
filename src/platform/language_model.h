#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <stop_token>
#include <string>

/// A language model on this machine. Its input never leaves the machine, and its output is not trusted.
namespace ulvak::platform {

enum class ModelAbsenceReason : std::uint8_t {
    deviceNotEligible,  ///< also: the server that the user names is not on this machine
    notEnabled,         ///< switched off
    notReady,           ///< still loading or downloading
    other,              ///< also: there is no server
};

/// Why no request can be made now.
struct ModelAbsence {
    ModelAbsenceReason reason = ModelAbsenceReason::other;
    /// What the user can do about it, in Turkish; empty if there is nothing to add to the reason. May quote a
    /// server: apply `printable`.
    std::string detail;
    /// A server is there but did not answer in time. It may be busy; if it was available before, it still is.
    bool isSilent = false;
};

struct ModelRequest {
    std::string instructions;
    std::string prompt;
    std::string answerName;    ///< the schema's name
    std::string answerSchema;  ///< a JSON schema; shown to the model, and enforced on its answer
    double temperature = 0.2;  ///< the only option set; sampling and length are the model's own

    friend bool operator==(const ModelRequest&, const ModelRequest&) = default;
};

struct ModelError {
    enum class Kind : std::uint8_t {
        guardrailViolation,   ///< the model's safety filter
        refusal,              ///< the model itself declines
        unsupportedLanguage,  ///< language or locale
        other,
    };
    /// A service may report its errors in two families that are handled differently.
    enum class Family : std::uint8_t { model, session };

    Kind kind = Kind::other;
    Family family = Family::model;
    /// For people: what failed, and the service's own words. Not trusted: apply `printable`. At most
    /// `maxTextLength` bytes.
    std::string text;
    /// Nobody answered in time, as in `ModelAbsence`.
    bool isSilent = false;

    static constexpr std::size_t maxTextLength = 2'000;

    friend bool operator==(const ModelError&, const ModelError&) = default;
};

/// Threads: any, concurrently. Calls block; a stop request ends them at once, with an error.
class LanguageModel {
public:
    LanguageModel() = default;
    virtual ~LanguageModel() = default;
    LanguageModel(const LanguageModel&) = delete;
    LanguageModel& operator=(const LanguageModel&) = delete;

    /// nullopt if requests can be made.
    [[nodiscard]] virtual std::optional<ModelAbsence> absence(std::stop_token stop = {}) const = 0;

    /// Sends one request in its own session; nothing is kept for the next. The answer is JSON, which the
    /// service has promised to match to the schema.
    [[nodiscard]] virtual std::expected<std::string, ModelError> respond(const ModelRequest& request,
                                                                         std::stop_token stop = {}) const = 0;
};

/// The system's own; null if it has none. Costs nothing until first used.
[[nodiscard]] const LanguageModel* systemLanguageModel();

}  // namespace ulvak::platform

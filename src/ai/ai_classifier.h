#pragma once

#include <cstdint>
#include <expected>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <variant>

#include "ai/folder_context.h"
#include "core/verdict.h"
#include "platform/language_model.h"

/// Asks this machine's language model what a folder is and how safe it is to delete. Stateless.
///
/// Threads: any, concurrently; blocks for as long as the model thinks. A stop request ends a request at once,
/// with an error, and no further request is made.
namespace ulvak::AIClassifier {

/// The classifier's own errors.
enum class Failure : std::uint8_t {
    guardrail,  ///< the model's safety filter, or the model itself, refuses to discuss this folder
};

/// Turkish, ready to show.
[[nodiscard]] std::string errorDescription(Failure failure);

/// Either the classifier's own error or the platform's, unchanged. An answer without the requested content is
/// a platform error.
struct Error {
    std::variant<Failure, platform::ModelError> value;

    [[nodiscard]] bool isGuardrail() const { return std::holds_alternative<Failure>(value); }

    /// One line, safe to show to people.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const Error&, const Error&) = default;
};

using Result = std::expected<Verdict, Error>;

/// Gathers the facts about a finding and asks. `note` may be empty; `running` names the applications that are
/// running now. A stop request on `around` ends the disk reads as well as the request.
[[nodiscard]] Result classify(const Finding& finding, std::string_view note,
                              std::span<const std::string> running, const platform::LanguageModel& model,
                              const FolderContext::Circumstances& around);

/// Asks with the full facts; if the model's safety filter refuses those, asks again with the minimal ones.
/// Both texts come from `FolderContext::build` for the same finding.
[[nodiscard]] Result classify(std::string_view full, std::string_view minimal,
                              const platform::LanguageModel& model, std::stop_token stop = {});

/// Asks with one text of facts, in Turkish; retries in English if the model does not support Turkish.
[[nodiscard]] Result classifyFacts(std::string_view facts, const platform::LanguageModel& model,
                                   std::stop_token stop = {});

enum class Language : std::uint8_t { turkish, english };

/// Builds the request for a text of facts.
[[nodiscard]] platform::ModelRequest request(std::string_view facts, Language language);

}  // namespace ulvak::AIClassifier

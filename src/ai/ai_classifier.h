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

/// Asks the language model of this machine what a folder is and how safe it is to delete. Stateless.
/// Threads: any, several at once; blocks the caller for as long as the model thinks. A stop ends a request
/// at once, with an error, and nothing is asked again after one.
namespace ulvak::AIClassifier {

/// The classifier's own error.
enum class Failure : std::uint8_t {
    guardrail,  ///< the model's safety filter, or the model itself, will not speak about this folder
};

/// Turkish, ready to show.
[[nodiscard]] std::string_view errorDescription(Failure failure);

/// Either the classifier's own error or the platform's, passed on as it came. An answer that does not hold
/// what was asked for is an error of the platform's kind.
struct Error {
    std::variant<Failure, platform::ModelError> value;

    [[nodiscard]] bool isGuardrail() const { return std::holds_alternative<Failure>(value); }

    /// For people, on one line, safe to show.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const Error&, const Error&) = default;
};

using Result = std::expected<Verdict, Error>;

/// Gathers the facts about a finding and asks. The note may be empty; `running` are names of applications
/// that run now. A stop of `around` ends the looks at the disk as well as the request.
[[nodiscard]] Result classify(const Finding& finding, std::string_view note,
                              std::span<const std::string> running, const platform::LanguageModel& model,
                              const FolderContext::Circumstances& around);

/// Asks with the full facts and, when the model's safety filter refuses those, once more with the minimal
/// ones. Both are texts of `FolderContext::build` about the same finding.
[[nodiscard]] Result classify(std::string_view full, std::string_view minimal,
                              const platform::LanguageModel& model, std::stop_token stop = {});

/// Asks with one text of facts, in Turkish, and once more in English when the model does not know Turkish.
[[nodiscard]] Result classifyFacts(std::string_view facts, const platform::LanguageModel& model,
                                   std::stop_token stop = {});

enum class Language : std::uint8_t { turkish, english };

/// The request that is made for a text of facts.
[[nodiscard]] platform::ModelRequest request(std::string_view facts, Language language);

}  // namespace ulvak::AIClassifier

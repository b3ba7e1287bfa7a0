#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/language_model.h"

namespace ulvak::test {

/// Gives the answers in order and records the requests.
class FakeModel : public platform::LanguageModel {
public:
    using Answer = std::expected<std::string, platform::ModelError>;

    /// `onAsked` is called during each request.
    explicit FakeModel(std::vector<Answer> answers, std::function<void()> onAsked = {})
        : answers_(std::move(answers)), onAsked_(std::move(onAsked)) {}
    explicit FakeModel(platform::ModelAbsence absence) : absence_(std::move(absence)) {}

    [[nodiscard]] std::optional<platform::ModelAbsence> absence(std::stop_token = {}) const override {
        return absence_;
    }

    [[nodiscard]] Answer respond(const platform::ModelRequest& request, std::stop_token = {}) const override {
        asked_.push_back(request);
        if (onAsked_)
            onAsked_();
        if (asked_.size() > answers_.size())
            return std::unexpected(platform::ModelError{.text = "asked too often"});
        return answers_[asked_.size() - 1];
    }

    [[nodiscard]] const std::vector<platform::ModelRequest>& asked() const { return asked_; }

private:
    std::vector<Answer> answers_;
    std::function<void()> onAsked_;
    std::optional<platform::ModelAbsence> absence_;
    mutable std::vector<platform::ModelRequest> asked_;
};

}  // namespace ulvak::test

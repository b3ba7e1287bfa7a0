#include "platform/language_model.h"

#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/macos/answer_schema.h"
#include "platform/macos/language_shim.h"

namespace ulvak::platform {
namespace {

/// The result of a request; the requesting thread waits for it.
class Outcome {
public:
    /// Callback for the shim; `context` is an `Outcome`. It stays alive until this was called, since `wait`
    /// does not return earlier; and it notifies under the lock, so that it is not destroyed meanwhile.
    static void settle(void* context, std::int32_t code, const char* text) {
        auto& self = *static_cast<Outcome*>(context);
        const std::scoped_lock lock(self.mutex_);
        self.code_ = code;
        self.text_ = text != nullptr ? text : "";
        self.isSettled_ = true;
        self.settled_.notify_one();
    }

    std::pair<std::int32_t, std::string> wait() {
        std::unique_lock lock(mutex_);
        settled_.wait(lock, [this] { return isSettled_; });
        return {code_, std::move(text_)};
    }

private:
    std::mutex mutex_;
    std::condition_variable settled_;
    // The following three are guarded by `mutex_`.
    bool isSettled_ = false;
    std::int32_t code_ = 0;
    std::string text_;
};

ModelError errorOf(std::int32_t code, std::string text) {
    ModelError error{.text = std::move(text)};
    if (error.text.size() > ModelError::maxTextLength)
        error.text.resize(ModelError::maxTextLength);
    if ((code & ulvakModelSessionFamily) != 0)
        error.family = ModelError::Family::session;
    switch (code & ~ulvakModelSessionFamily) {
        case ulvakModelGuardrailViolation:
            error.kind = ModelError::Kind::guardrailViolation;
            break;
        case ulvakModelRefusal:
            error.kind = ModelError::Kind::refusal;
            break;
        case ulvakModelUnsupportedLanguage:
            error.kind = ModelError::Kind::unsupportedLanguage;
            break;
        default:
            break;
    }
    return error;
}

/// An answer's properties in the shim's form; points into `properties`, which must outlive it.
class ShimProperties {
public:
    explicit ShimProperties(const std::vector<AnswerProperty>& properties) {
        choices_.reserve(properties.size());
        for (const AnswerProperty& property : properties) {
            auto& choices = choices_.emplace_back();
            for (const std::string& choice : property.choices)
                choices.push_back(choice.c_str());
            rows_.push_back(
                {.name = property.name.c_str(),
                 .description = property.description.empty() ? nullptr : property.description.c_str(),
                 .kind = kindOf(property.kind),
                 .choiceCount = static_cast<std::int32_t>(choices.size()),
                 .choices = choices.data(),
                 .least = property.least,
                 .most = property.most});
        }
    }

    [[nodiscard]] const std::vector<UlvakModelProperty>& rows() const { return rows_; }

private:
    static std::int32_t kindOf(AnswerProperty::Kind kind) {
        switch (kind) {
            case AnswerProperty::Kind::choice:
                return ulvakModelChoice;
            case AnswerProperty::Kind::integer:
                return ulvakModelInteger;
            case AnswerProperty::Kind::text:
                break;
        }
        return ulvakModelText;
    }

    std::vector<std::vector<const char*>> choices_;
    std::vector<UlvakModelProperty> rows_;
};

class SystemModel : public LanguageModel {
public:
    [[nodiscard]] std::optional<ModelAbsence> absence(std::stop_token /*stop*/) const override {
        switch (::ulvakModelState()) {
            case ulvakModelAvailable:
                return std::nullopt;
            case ulvakModelDeviceNotEligible:
                return ModelAbsence{.reason = ModelAbsenceReason::deviceNotEligible};
            case ulvakModelNotEnabled:
                return ModelAbsence{.reason = ModelAbsenceReason::notEnabled};
            case ulvakModelNotReady:
                return ModelAbsence{.reason = ModelAbsenceReason::notReady};
            default:
                return ModelAbsence{};
        }
    }

    [[nodiscard]] std::expected<std::string, ModelError> respond(const ModelRequest& request,
                                                                 std::stop_token stop) const override {
        const auto properties = answerProperties(request.answerSchema);
        if (!properties)
            return std::unexpected(ModelError{.text = "Yanıt şeması bu modele uygun değil."});
        const ShimProperties rows(*properties);
        const UlvakModelRequest shimRequest{.instructions = request.instructions.c_str(),
                                            .prompt = request.prompt.c_str(),
                                            .answerName = request.answerName.c_str(),
                                            .properties = rows.rows().data(),
                                            .propertyCount = static_cast<std::int64_t>(rows.rows().size()),
                                            .temperature = request.temperature};
        Outcome outcome;
        void* started = ::ulvakModelStart(&shimRequest, &outcome, &Outcome::settle);
        auto [code, text] = [&] {
            const std::stop_callback cancel(stop, [started] { ::ulvakModelCancel(started); });
            return outcome.wait();
        }();
        ::ulvakModelRelease(started);
        if (code != ulvakModelAnswered)
            return std::unexpected(errorOf(code, std::move(text)));
        return std::move(text);
    }
};

}  // namespace

const LanguageModel* systemLanguageModel() {
    static const SystemModel model;
    return &model;
}

}  // namespace ulvak::platform

#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <nlohmann/json.hpp>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/language_model.h"
#include "platform/macos/language_shim.h"

// Runs our side of the shim against the stand-in: every state, every error, an answer, a stop. Exits with 0
// if everything is as expected. Uses no test library, because it runs where the other tests cannot.

namespace {

using namespace ulvak::platform;
using Kind = ModelError::Kind;
using Family = ModelError::Family;

int failures = 0;

void expect(bool isSo, const std::string& what) {
    std::printf("%s: %s\n", isSo ? "ok" : "FAILED", what.c_str());
    failures += isSo ? 0 : 1;
}

ModelRequest request(const std::string& prompt) {
    return {.instructions = "Türkçe yaz.\nİki satır.",
            .prompt = prompt,
            .answerName = "Answer",
            .answerSchema =
                R"({"type":"object","properties":{)"
                R"("level":{"description":"Ne kadar güvenli","type":"string","enum":["safe","keep"]},)"
                R"("title":{"type":"string"},)"
                R"("confidence":{"type":"integer","minimum":0,"maximum":100}},)"
                R"("required":["level","title","confidence"],"additionalProperties":false})",
            .temperature = 0.2};
}

void checkStates() {
    struct Row {
        const char* state;
        ModelAbsenceReason reason;
    };
    const LanguageModel& model = *systemLanguageModel();
    for (const Row& row :
         {Row{"not eligible", ModelAbsenceReason::deviceNotEligible},
          Row{"not enabled", ModelAbsenceReason::notEnabled}, Row{"not ready", ModelAbsenceReason::notReady},
          Row{"unforeseen", ModelAbsenceReason::other}}) {
        ::setenv("STAND_IN_STATE", row.state, 1);
        const auto absence = model.absence();
        expect(absence && absence->reason == row.reason, std::string("state: ") + row.state);
    }
    ::unsetenv("STAND_IN_STATE");
    expect(!model.absence(), "state: available");
}

void checkErrors() {
    struct Row {
        const char* prompt;
        Kind kind;
        Family family;
        const char* text;
    };
    const std::vector<Row> rows = {
        {"session:guardrailViolation", Kind::guardrailViolation, Family::session,
         "session: guardrailViolation"},
        {"session:refusal", Kind::refusal, Family::session, "session: refusal"},
        {"session:unsupportedLanguageOrLocale", Kind::unsupportedLanguage, Family::session,
         "session: unsupportedLanguageOrLocale"},
        {"session:exceededContextWindowSize", Kind::other, Family::session,
         "session: exceededContextWindowSize"},
        {"session:assetsUnavailable", Kind::other, Family::session, "session: assetsUnavailable"},
        {"session:unsupportedGuide", Kind::other, Family::session, "session: unsupportedGuide"},
        {"session:decodingFailure", Kind::other, Family::session, "session: decodingFailure"},
        {"session:rateLimited", Kind::other, Family::session, "session: rateLimited"},
        {"session:concurrentRequests", Kind::other, Family::session, "session: concurrentRequests"},
        {"model:guardrailViolation", Kind::guardrailViolation, Family::model, "model: guardrailViolation"},
        {"model:refusal", Kind::refusal, Family::model, "model: refusal"},
        {"model:unsupportedLanguageOrLocale", Kind::unsupportedLanguage, Family::model,
         "model: unsupportedLanguageOrLocale"},
        {"model:contextSizeExceeded", Kind::other, Family::model, "model: contextSizeExceeded"},
        {"model:rateLimited", Kind::other, Family::model, "model: rateLimited"},
        {"model:unsupportedCapability", Kind::other, Family::model, "model: unsupportedCapability"},
        {"model:timeout", Kind::other, Family::model, "model: timeout"},
        {"unforeseen", Kind::other, Family::model, "unforeseen"},
    };
    for (const Row& row : rows) {
        const auto answer = systemLanguageModel()->respond(request(row.prompt));
        expect(!answer && answer.error().kind == row.kind && answer.error().family == row.family &&
                   answer.error().text == row.text,
               row.prompt);
    }
}

void checkAnswer() {
    const auto answer = systemLanguageModel()->respond(request("Bu klasör ne?"));
    const nlohmann::json expected = {"Türkçe yaz.\nİki satır.", "Bu klasör ne?",
                                     "Answer {level(Ne kadar güvenli): levelChoice of safe|keep; title(-): "
                                     "String; confidence(-): Int 0...100}",
                                     "true", "0.2"};
    expect(answer && nlohmann::json::parse(*answer, nullptr, false) == expected, "an answer");
    ModelRequest unusable = request("x");
    unusable.answerSchema = "[]";
    expect(!systemLanguageModel()->respond(unusable), "a schema that cannot be kept to");
}

void checkMany() {
    std::vector<std::future<bool>> answers;
    for (int i = 0; i < 32; ++i)
        answers.push_back(std::async(std::launch::async, [i] {
            const auto answer = systemLanguageModel()->respond(request("soru " + std::to_string(i)));
            return answer && answer->contains("soru " + std::to_string(i) + "\"");
        }));
    bool allAnswered = true;
    for (auto& answer : answers)
        allAnswered = answer.get() && allAnswered;
    expect(allAnswered, "many at once");
}

void checkStop() {
    std::stop_source before;
    before.request_stop();
    const auto stopped = systemLanguageModel()->respond(request("deaf"), before.get_token());
    expect(!stopped && stopped.error().kind == Kind::other, "stopped before it began");

    std::stop_source meanwhile;
    auto answer = std::async(std::launch::async, [&] {
        return systemLanguageModel()->respond(request("deaf"), meanwhile.get_token());
    });
    meanwhile.request_stop();
    expect(!answer.get(), "stopped while it runs, though the framework does not hear it");
}

/// Counts the callbacks of one request.
struct Calls {
    std::atomic<int> count = 0;
    std::promise<std::int32_t> first;

    static void settle(void* context, std::int32_t outcome, const char* /*text*/) {
        auto& self = *static_cast<Calls*>(context);
        if (self.count++ == 0)
            self.first.set_value(outcome);
    }
};

void* start(const char* prompt, Calls& calls) {
    const UlvakModelRequest bare{.instructions = "",
                                 .prompt = prompt,
                                 .answerName = "Answer",
                                 .properties = nullptr,
                                 .propertyCount = 0,
                                 .temperature = 0};
    return ::ulvakModelStart(&bare, &calls, &Calls::settle);
}

/// Each request must be settled exactly once: its caller is gone after that.
void checkSettledOnce() {
    Calls answered;
    void* started = start("soru", answered);
    expect(answered.first.get_future().get() == ulvakModelAnswered, "answered");
    ::ulvakModelCancel(started);
    ::ulvakModelCancel(started);
    ::ulvakModelRelease(started);
    expect(answered.count == 1, "a stop after the answer says nothing more");

    Calls stopped;
    started = start("deaf", stopped);
    ::ulvakModelCancel(started);
    ::ulvakModelCancel(started);
    ::ulvakModelRelease(started);
    expect(stopped.count == 1 && stopped.first.get_future().get() == ulvakModelOtherError,
           "a second stop says nothing more");
}

void checkFrameworkHearsStop() {
    constexpr int maxWait = 20'000;  // milliseconds
    std::array<int, 2> heard{};
    expect(::pipe(heard.data()) == 0, "a pipe");
    ::setenv("STAND_IN_HEARD", std::to_string(heard[1]).c_str(), 1);
    Calls calls;
    void* started = start("hears", calls);
    ::ulvakModelCancel(started);
    pollfd readable{.fd = heard[0], .events = POLLIN, .revents = 0};
    expect(::poll(&readable, 1, maxWait) == 1, "the framework is told of a stop");
    ::ulvakModelRelease(started);
}

}  // namespace

int main() {
    checkStates();
    checkErrors();
    checkAnswer();
    checkMany();
    checkStop();
    checkSettledOnce();
    checkFrameworkHearsStop();
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "ai/ai_classifier.h"
#include "ai/linux/scripted_server.h"
#include "ai/server/http_exchange.h"
#include "ai/server/local_model.h"
#include "ai/server/model_reply.h"

namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using namespace test;
using Kind = ModelError::Kind;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;

/// A reply and what it means.
struct Row {
    const char* name;
    int status;
    std::string body;
    Kind kind;
    std::string text;  ///< contained in the error's text
};

std::string ended(const char* reason, const char* message = R"({"content":"{"})") {
    return std::string(R"({"choices":[{"finish_reason":")") + reason + R"(","message":)" + message + "}]}";
}

std::string errorBody(const std::string& members) {
    return R"({"error":{)" + members + "}}";
}

// clang-format off
const std::vector<Row> rows = {
    {"filter ended it",           200, ended("content_filter"),                                        Kind::guardrailViolation,  "content_filter"},
    {"filter without message",    200, R"({"choices":[{"finish_reason":"content_filter"}]})",          Kind::guardrailViolation,  "content_filter"},
    {"filter as error code",      400, errorBody(R"("code":"content_filter","message":"filtered")"),   Kind::guardrailViolation,  "filtered"},
    {"policy as error code",      400, errorBody(R"("code":"content_policy_violation","message":"p")"), Kind::guardrailViolation, "HTTP 400"},
    {"guardrail as error type",   400, errorBody(R"("type":"guardrailViolation","message":"g")"),      Kind::guardrailViolation,  "g"},
    {"refusal of the message",    200, ended("stop", R"({"content":null,"refusal":"I cannot."})"),     Kind::refusal,             "I cannot."},
    {"refusal beside content",    200, ended("stop", R"({"content":"{}","refusal":"No."})"),           Kind::refusal,             "No."},
    {"refusal as error code",     422, errorBody(R"("code":"refusal","message":"no")"),                Kind::refusal,             "no"},
    {"language as error code",    400, errorBody(R"("code":"unsupported_language","message":"tr")"),   Kind::unsupportedLanguage, "tr"},
    {"language as error type",    400, errorBody(R"("type":"unsupportedLanguageOrLocale","message":"tr")"), Kind::unsupportedLanguage, "tr"},
    {"locale as error code",      400, errorBody(R"("code":"LOCALE_NOT_SUPPORTED","message":"tr")"),   Kind::unsupportedLanguage, "tr"},
    {"language in the message",   400, errorBody(R"("message":"Unsupported language or locale: tr")"), Kind::unsupportedLanguage, "locale: tr"},
    {"language as error text",    400, R"({"error":"The language is not supported."})",                Kind::unsupportedLanguage, "language"},
    {"not about languages",       400, errorBody(R"("message":"unsupported language model x")"),       Kind::other,               "language model x"},
    {"error beside success",      200, errorBody(R"("message":"broken")"),                             Kind::other,               "broken"},
    {"loading",                   503, errorBody(R"("message":"Loading model","code":503)"),           Kind::other,               "henüz yüklüyor"},
    {"loading without body",      503, "",                                                             Kind::other,               "henüz yüklüyor"},
    {"loading by its message",    500, R"({"error":"loading model"})",                                 Kind::other,               "henüz yüklüyor"},
    {"loading by its type",       500, errorBody(R"("type":"unavailable_error","message":"wait")"),    Kind::other,               "henüz yüklüyor. Biraz sonra tekrar dene. wait"},
    {"loading has failed",        500, errorBody(R"("message":"error loading model x")"),              Kind::other,               "(HTTP 500): error loading model x"},
    {"loading has failed, 503",   503, errorBody(R"("message":"error loading model x")"),              Kind::other,               "(HTTP 503): error loading model x"},
    {"too busy",                  503, errorBody(R"("message":"server busy, queue is full")"),         Kind::other,               "(HTTP 503): server busy"},
    {"a proxy's page",            503, "<html>Backend down</html>",                                    Kind::other,               "henüz yüklüyor"},
    {"filter, unavailable",       503, errorBody(R"("code":"content_filter","message":"f")"),          Kind::guardrailViolation,  "(HTTP 503): f"},
    {"language, unavailable",     503, errorBody(R"("code":"unsupported_language")"),                  Kind::unsupportedLanguage, "HTTP 503"},
    {"filter that seems to load", 500, errorBody(R"("code":"content_filter","message":"loading model")"), Kind::guardrailViolation, "HTTP 500"},
    {"no such model",             404, errorBody(R"("message":"model \"x\" not found, try pulling it")"), Kind::other,            "model \"x\" not found, try pulling it"},
    {"error as text",             500, R"({"error":"out of memory"})",                                 Kind::other,               "(HTTP 500): out of memory"},
    {"error as message",          500, R"({"message":"out of memory"})",                               Kind::other,               "out of memory"},
    {"error as detail",           422, R"({"detail":"bad field"})",                                    Kind::other,               "bad field"},
    {"error as a number",         500, R"({"error":7})",                                               Kind::other,               "(HTTP 500): Sunucunun kendi çıktısına bak."},
    {"error as plain text",       502, "upstream\nis gone",                                            Kind::other,               "(HTTP 502): upstream is gone"},
    {"error as a page",           500, "<!doctype html><h1>Oops</h1>",                                 Kind::other,               "(HTTP 500): Sunucunun kendi çıktısına bak."},
    {"error without a body",      500, "",                                                             Kind::other,               "(HTTP 500)"},
    {"key wanted",                401, errorBody(R"("message":"Invalid API Key")"),                    Kind::other,               "Invalid API Key"},
    {"context too small",         400, errorBody(R"("message":"exceeds the available context size")"), Kind::other,               "context size"},
    {"redirected",                307, "",                                                             Kind::other,               "yönlendirmeler izlenmez"},
    {"not JSON",                  200, "Merhaba!",                                                     Kind::other,               "JSON değil"},
    {"empty",                     200, "",                                                             Kind::other,               "JSON değil"},
    {"JSON cut off",              200, R"({"choices":[{"mess)",                                        Kind::other,               "JSON değil"},
    {"bytes",                     200, std::string("\x00\xff\xfe\x1b", 4),                             Kind::other,               "JSON değil"},
    {"another schema",            200, R"({"answer":"safe"})",                                         Kind::other,               "beklenen biçimde değil"},
    {"no choices",                200, R"({"choices":[]})",                                            Kind::other,               "beklenen biçimde değil"},
    {"choices of another kind",   200, R"({"choices":{"0":{}}})",                                      Kind::other,               "beklenen biçimde değil"},
    {"choice of another kind",    200, R"({"choices":["x"]})",                                         Kind::other,               "beklenen biçimde değil"},
    {"no message",                200, R"({"choices":[{}]})",                                          Kind::other,               "beklenen biçimde değil"},
    {"content of another kind",   200, ended("stop", R"({"content":[1]})"),                            Kind::other,               "beklenen biçimde değil"},
    {"no content",                200, ended("stop", R"({"content":null})"),                           Kind::other,               "beklenen biçimde değil"},
    {"array",                     200, "[1,2]",                                                        Kind::other,               "beklenen biçimde değil"},
    {"ended for its length",      200, ended("length"),                                                Kind::other,               "yarım kaldı"},
    {"nothing to say",            204, "",                                                             Kind::other,               "HTTP 204"},
};
// clang-format on

TEST(LocalModelErrors, EveryReplyMeansWhatTheTableSays) {
    for (const Row& row : rows) {
        const auto answer = readAnswer(row.status, row.body, "http://127.0.0.1:1");
        ASSERT_FALSE(answer) << row.name;
        EXPECT_EQ(answer.error().kind, row.kind) << row.name;
        EXPECT_EQ(answer.error().family, ModelError::Family::model) << row.name;
        EXPECT_TRUE(answer.error().text.contains(row.text)) << row.name << ": " << answer.error().text;
    }
}

TEST(LocalModelErrors, EveryReplyMeansTheSameOverASocket) {
    for (const Row& row : rows) {
        const ScriptedServer server(modelServer(row.status, row.body));
        const auto answer = patient({.url = server.url()}).respond({.answerSchema = "{}"});
        ASSERT_FALSE(answer) << row.name;
        EXPECT_EQ(answer.error().kind, row.kind) << row.name;
        EXPECT_TRUE(answer.error().text.contains(row.text)) << row.name << ": " << answer.error().text;
    }
}

/// The outcome of one classifier request whose chat is answered by `chat`. If it never ends, the test times
/// out.
std::string ending(ScriptedServer::Script chat, std::chrono::milliseconds deadline = 30s) {
    const ScriptedServer server(modelServer(std::move(chat)));
    const LocalModel model = patient({.url = server.url(), .answerDeadline = deadline});
    const auto verdict = AIClassifier::classify("full", "minimal", model);
    if (verdict)
        return "a verdict";
    EXPECT_FALSE(verdict.error().isGuardrail());
    return verdict.error().description();
}

/// The same for an answer that does not arrive within the deadline of under a second. A stalled machine may
/// not even have connected by then, so the deadline is then extended.
std::string endingLate(const ScriptedServer::Script& chat) {
    std::string text;
    for (auto deadline = 100ms; deadline < 1s; deadline *= 2) {
        text = ending(chat, deadline);
        if (!text.contains("bağlantı kurulamadı"))
            break;
    }
    return text;
}

std::string ending(const std::string& content) {
    return ending(
        [&](const Connection& client, const Request&) { client.send(reply(200, chatReply(content))); });
}

TEST(LocalModelErrors, AnswersThatDoNotHoldTheSchemaEndAsErrorsToActOn) {
    struct AnswerRow {
        const char* answer;
        const char* text;
    };
    constexpr AnswerRow answers[] = {
        {"Silebilirsin.", "JSON değil"},
        {R"({"level":"safe","title":"t")", "JSON değil"},
        {R"({"verdict":"safe"})", "\"level\""},
        {R"({"level":"unknown","title":"t","reason":"r","confidence":1})",
         R"(Unexpected value ""unknown"" for AILevel)"},
        {R"({"level":"safe","title":"t","reason":"r","confidence":1e99})", "\"confidence\""},
        {R"({"level":"safe","title":"t","reason":"r","confidence":"90"})", "\"confidence\""},
        {"{\"level\":\"safe\",\"title\":\"t\x07\",\"reason\":\"r\",\"confidence\":1}", "JSON değil"},
    };
    for (const auto& [answer, text] : answers)
        EXPECT_TRUE(ending(answer).contains(text)) << ending(answer);
    EXPECT_EQ(ending(R"({"level":"safe","title":"t\u0007","reason":"r","confidence":1})"), "a verdict");
}

TEST(LocalModelErrors, AnswerOfAMegabyteIsTooLong) {
    const std::string body = chatReply(std::string(1'000'000, 'x'));
    EXPECT_TRUE(ending([&](const Connection& client, const Request&) {
                    client.send(reply(200, body));
                }).contains("uzunlukta"));
}

TEST(LocalModelErrors, AnswerWithoutEndIsTooLong) {
    const std::string chunk = "10000\r\n" + std::string(0x10000, 'x') + "\r\n";
    EXPECT_TRUE(ending([&](const Connection& client, const Request&) {
                    client.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
                    while (client.trySend(chunk)) {
                    }
                }).contains("uzunlukta"));
}

TEST(LocalModelErrors, HeadersWithoutEndAreTooLong) {
    EXPECT_TRUE(ending([](const Connection& client, const Request&) {
                    client.send("HTTP/1.1 200 OK\r\n");
                    while (client.trySend("X-Header: " + std::string(1'000, 'x') + "\r\n")) {
                    }
                }).contains("uzunlukta"));
}

TEST(LocalModelErrors, InterimRepliesWithoutEndAreTooLong) {
    EXPECT_TRUE(ending([](const Connection& client, const Request&) {
                    while (client.trySend("HTTP/1.1 100 Continue\r\n\r\n")) {
                    }
                }).contains("uzunlukta"));
}

TEST(LocalModelErrors, AnswerThatNeverComesEndsAtTheDeadline) {
    const std::string text =
        endingLate([](const Connection& client, const Request&) { client.waitForItsEnd(); });
    EXPECT_TRUE(text.contains("1 saniye içinde yanıt vermedi")) << text;
}

TEST(LocalModelErrors, AnswerThatStopsHalfWayEndsAtTheDeadline) {
    const std::string text = endingLate([](const Connection& client, const Request&) {
        client.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n{\"choices\"");
        client.waitForItsEnd();
    });
    EXPECT_TRUE(text.contains("yanıt vermedi")) << text;
}

TEST(LocalModelErrors, ConnectionClosedHalfWaySaysSo) {
    const std::vector<ScriptedServer::Script> scripts = {
        [](const Connection&, const Request&) {},
        [](const Connection& client, const Request&) {
            client.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n{\"choices\":[");
        },
        [](const Connection& client, const Request&) {
            client.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{\"cho");
        },
        [](const Connection& client, const Request&) {
            client.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n{");
            client.breakOff();
        },
    };
    for (std::size_t i = 0; i < scripts.size(); ++i) {
        const std::string text = ending(scripts[i]);
        EXPECT_TRUE(text.contains("yanıt bitmeden kesti")) << i << ": " << text;
    }
}

TEST(LocalModelErrors, CloseWithoutALengthLeavesAnAnswerCutOff) {
    for (const char* bytes :
         {"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n{\"choices\":[", "HTTP/1.1 200 OK\r\nContent-Le"}) {
        const std::string text =
            ending([&](const Connection& client, const Request&) { client.send(bytes); });
        EXPECT_TRUE(text.contains("yarım kalmış")) << text;
    }
}

TEST(LocalModelErrors, WhatIsNotHttpSaysSo) {
    for (const char* bytes :
         {"SSH-2.0-OpenSSH\r\n", "\x15\x03\x01", "{\"choices\":[]}", "HTTP/9.9 200\r\n\r\n"}) {
        const std::string text =
            ending([&](const Connection& client, const Request&) { client.send(bytes); });
        EXPECT_TRUE(text.contains("konuşulamadı: gelen yanıt HTTP değil.")) << text;
    }
}

TEST(LocalModelErrors, ServerThatIsGoneSaysSo) {
    const std::string url = "http://127.0.0.1:" + std::to_string(refusingPort());
    const auto answer = patient({.url = url}).respond({});
    ASSERT_FALSE(answer);
    EXPECT_TRUE(answer.error().text.contains("(" + url + ") çalışmıyor")) << answer.error().text;
}

TEST(LocalModelErrors, ServerThatTakesNoConnectionsCannotBeReached) {
    const FullListener full;
    const auto error =
        exchange(loopbackAddress(full.port()), {.path = "/x", .connectDeadline = 50ms, .deadline = 180s});
    ASSERT_FALSE(error);
    EXPECT_EQ(error.error().kind, HttpError::Kind::unconnected);
    const auto deadline =
        exchange(loopbackAddress(full.port()), {.path = "/x", .connectDeadline = 180s, .deadline = 50ms});
    ASSERT_FALSE(deadline);
    EXPECT_EQ(deadline.error().kind, HttpError::Kind::unconnected);

    const std::string url = "http://127.0.0.1:" + std::to_string(full.port());
    const auto answer = LocalModel({.url = url, .namedDeadline = 50ms}).respond({});
    ASSERT_FALSE(answer);
    EXPECT_TRUE(answer.error().text.contains("(" + url + ") ulaşılamıyor")) << answer.error().text;
    EXPECT_FALSE(answer.error().text.contains("saniye")) << answer.error().text;
}

TEST(LocalModelErrors, ServerThatTakesConnectionsAndSaysNothingIsLate) {
    const SilentListener silent;
    EXPECT_EQ(
        endOfTime(loopbackAddress(silent.port()), {.path = "/x", .connectDeadline = 180s, .deadline = 50ms}),
        HttpError::Kind::late);
    // There is no connection until the other side has completed the handshake.
    auto secure = modelAddress("https://127.0.0.1:" + std::to_string(silent.port()));
    ASSERT_TRUE(secure);
    const auto unconnected = exchange(*secure, {.path = "/x", .connectDeadline = 50ms, .deadline = 30s});
    ASSERT_FALSE(unconnected);
    EXPECT_EQ(unconnected.error().kind, HttpError::Kind::unconnected);
}

TEST(LocalModelErrors, NothingIsSentWithoutTimeOrAfterAStop) {
    const SilentListener silent;
    const auto noTime =
        exchange(loopbackAddress(silent.port()), {.path = "/x", .connectDeadline = 0ms, .deadline = 0ms});
    ASSERT_FALSE(noTime);
    EXPECT_EQ(noTime.error().kind, HttpError::Kind::unconnected);
    std::stop_source stop;
    stop.request_stop();
    const auto stopped =
        exchange(loopbackAddress(silent.port()), {.path = "/x", .json = "facts"}, stop.get_token());
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().kind, HttpError::Kind::stopped);
    EXPECT_FALSE(silent.wasContacted());
}

TEST(LocalModelErrors, WordsOfTheServerAreBoundedAndFitForATerminal) {
    const std::string words = "a\\n\\u001b[2J\\u0000\\u202e" + std::string(100'000, 'x');
    const std::string text = ending([&](const Connection& client, const Request&) {
        client.send(reply(500, R"({"error":{"message":")" + words + R"("}})"));
    });
    EXPECT_LT(text.size(), ModelError::maxTextLength);
    EXPECT_TRUE(text.contains(": a \uFFFD[2J\uFFFD\uFFFDxxx")) << text;
    for (const char c : {'\n', '\x1b', '\0'})
        EXPECT_FALSE(text.contains(c));
}

TEST(LocalModelErrors, RefusedFullTextIsAskedAgainOverTheSocket) {
    int asked = 0;
    const ScriptedServer server(modelServer([&](const Connection& client, const Request& request) {
        ++asked;
        const bool isMinimal = request.body.contains("minimal facts");
        client.send(reply(200, isMinimal
                                   ? chatReply(R"({"level":"keep","title":"t","reason":"r","confidence":-5})")
                                   : ended("content_filter")));
    }));
    const auto verdict =
        AIClassifier::classify("full facts", "minimal facts", patient({.url = server.url()}));
    ASSERT_TRUE(verdict) << verdict.error().description();
    EXPECT_EQ(verdict->confidence, 0);
    EXPECT_EQ(asked, 2);
}

TEST(LocalModelErrors, UnsupportedTurkishIsAskedAgainInEnglishOverTheSocket) {
    const ScriptedServer server(modelServer([](const Connection& client, const Request& request) {
        const bool isEnglish = request.body.contains("Write in English.");
        client.send(isEnglish
                        ? reply(200, chatReply(R"({"level":"keep","title":"t","reason":"r","confidence":5})"))
                        : reply(400, errorBody(R"("code":"unsupported_language","message":"tr")")));
    }));
    EXPECT_TRUE(AIClassifier::classify("full", "minimal", patient({.url = server.url()})));
}

}  // namespace
}  // namespace ulvak::platform

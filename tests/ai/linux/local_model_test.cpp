#include "ai/server/local_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>

#include "ai/ai_classifier.h"
#include "ai/ai_status.h"
#include "ai/linux/scripted_server.h"
#include "support/environment.h"
#include "support/temp_tree.h"
#include "support/wait.h"

namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using namespace test;
using Json = nlohmann::ordered_json;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;
using Reason = ModelAbsenceReason;

const ModelRequest anyRequest{
    .instructions = "i", .prompt = "p", .answerName = "A", .answerSchema = R"({"type":"object"})"};

LocalModel named(const ScriptedServer& server) {
    return patient({.url = server.url()});
}

ScriptedServer::Script listing(std::vector<std::string> names) {
    return [names = std::move(names)](const Connection& client, const Request& request) {
        const bool isList = request.path == "/v1/models";
        client.send(isList ? reply(200, modelList(names)) : reply(404, "not found"));
    };
}

std::vector<std::string> pathsOf(const ScriptedServer& server) {
    std::vector<std::string> paths;
    for (const Request& request : server.requests())
        paths.push_back(request.method + " " + request.path);
    return paths;
}

Reason reasonOf(const LocalModel& model) {
    const auto absence = model.absence();
    EXPECT_TRUE(absence) << "available";
    EXPECT_FALSE(absence && absence->detail.empty()) << "nothing for the user to act on";
    return absence ? absence->reason : Reason::other;
}

// Availability

TEST(LocalModel, IsAvailableWhereAServerListsAModel) {
    const ScriptedServer server(listing({"a"}));
    EXPECT_FALSE(named(server).absence());
    EXPECT_FALSE(patient({.ports = {server.port()}}).absence());
    EXPECT_TRUE(AIStatus::current(named(server)).isAvailable());
}

TEST(LocalModel, NoServerIsAnyOtherReasonAndKnownAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    const std::uint16_t nobody = refusingPort();
    EXPECT_EQ(reasonOf(patient({.ports = {nobody, nobody, nobody}})), Reason::other);
    EXPECT_EQ(reasonOf(patient({.url = "http://127.0.0.1:" + std::to_string(nobody)})), Reason::other);
    EXPECT_EQ(reasonOf(patient({.url = "unix:/nonexistent/model.sock"})), Reason::other);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 60s) << "a deadline was waited for";
}

TEST(LocalModel, ServerThatIsLoadingItsModelIsNotReady) {
    const char* loading = R"({"error":{"code":503,"message":"Loading model","type":"unavailable_error"}})";
    const ScriptedServer all(
        [&](const Connection& client, const Request&) { client.send(reply(503, loading)); });
    EXPECT_EQ(reasonOf(named(all)), Reason::notReady);
    EXPECT_EQ(reasonOf(patient({.ports = {refusingPort(), all.port()}})), Reason::notReady);
    // Other servers list the model already.
    const ScriptedServer healthOnly([&](const Connection& client, const Request& request) {
        client.send(request.path == "/v1/models" ? reply(200, modelList({"a"})) : reply(503, loading));
    });
    EXPECT_EQ(reasonOf(named(healthOnly)), Reason::notReady);
    EXPECT_EQ(AIStatus::current(named(healthOnly)).unavailable,
              "Dil modeli henüz hazır değil (yükleniyor olabilir). Biraz sonra tekrar dene.");
}

TEST(LocalModel, UnavailableServerThatSaysNothingOfLoadingIsAnyOtherReason) {
    for (const char* body : {"<html>", "", "{}"}) {
        for (const char* stage : {"/v1/models", "/health"}) {
            const ScriptedServer server([&](const Connection& client, const Request& request) {
                if (request.path == stage)
                    client.send(reply(503, body));
                else
                    modelServer(200, chatReply("x"))(client, request);
            });
            EXPECT_EQ(reasonOf(named(server)), Reason::other) << stage << body;
            EXPECT_TRUE(named(server).absence()->detail.contains("HTTP 503")) << stage << body;
        }
    }
}

TEST(LocalModel, SwitchedOffIsNotEnabledAndAsksNobody) {
    const ScriptedServer server(listing({"a"}));
    const LocalModel model({.url = server.url(), .isOff = true, .ports = {server.port()}});
    EXPECT_EQ(reasonOf(model), Reason::notEnabled);
    const auto answer = model.respond(anyRequest);
    ASSERT_FALSE(answer);
    EXPECT_TRUE(answer.error().text.contains("ULVAK_MODEL_OFF"));
    EXPECT_TRUE(server.requests().empty());
}

TEST(LocalModel, RefusedAddressIsDeviceNotEligible) {
    const LocalModel model({.url = "http://192.0.2.1:8080"});
    EXPECT_EQ(reasonOf(model), Reason::deviceNotEligible);
    const AIStatus status = AIStatus::current(model);
    EXPECT_EQ(status.plainText(), "unavailable(\"Bu bilgisayardaki dil modeli kullanılamıyor.\")");
    EXPECT_TRUE(status.hint.contains("ULVAK_MODEL_URL kabul edilmedi (http://192.0.2.1:8080)"));
}

TEST(LocalModel, ServerWithoutModelsIsAnyOtherReason) {
    const ScriptedServer server(listing({}));
    EXPECT_EQ(reasonOf(named(server)), Reason::other);
    EXPECT_TRUE(named(server).absence()->detail.contains("hiç model yok"));
}

TEST(LocalModel, AnythingElseThatAnswersIsAnyOtherReason) {
    for (const std::string& answer :
         {reply(200, "<html></html>"), reply(404, "no"), std::string("SSH-2.0-x\r\n"), std::string(),
          reply(302, "", "Location: /v1/models/\r\n")}) {
        const ScriptedServer server([&](const Connection& client, const Request&) { client.send(answer); });
        EXPECT_EQ(reasonOf(named(server)), Reason::other) << answer;
        EXPECT_EQ(reasonOf(patient({.ports = {server.port()}})), Reason::other) << answer;
    }
}

TEST(LocalModel, ServerThatNeverAnswersIsGivenUp) {
    const ScriptedServer server([](const Connection& client, const Request&) { client.waitForItsEnd(); });
    EXPECT_EQ(reasonOf(LocalModel({.url = server.url(), .namedDeadline = 50ms})), Reason::other);
    EXPECT_EQ(reasonOf(LocalModel({.ports = {server.port()}, .probeDeadline = 50ms})), Reason::other);
}

// Which server, which model

TEST(LocalModel, FirstPortWithAModelIsAsked) {
    const ScriptedServer notOne(
        [](const Connection& client, const Request&) { client.send(reply(404, "no")); });
    const ScriptedServer loading([](const Connection& client, const Request&) {
        client.send(reply(503, R"({"error":"Loading model"})"));
    });
    const ScriptedServer first(modelServer(200, chatReply("one")));
    const ScriptedServer second(modelServer(200, chatReply("two")));
    const LocalModel model =
        patient({.ports = {refusingPort(), notOne.port(), loading.port(), first.port(), second.port()}});
    EXPECT_FALSE(model.absence());
    EXPECT_EQ(model.respond(anyRequest).value_or("error"), "one");
    EXPECT_TRUE(second.requests().empty());
    for (const Request& request : notOne.requests())
        EXPECT_EQ(request.body, "");  // nothing is sent to a server that is not a model server
}

TEST(LocalModel, NamedModelIsAskedOfTheServerThatListsIt) {
    const ScriptedServer first(modelServer(200, chatReply("one")));
    const ScriptedServer second([](const Connection& client, const Request& request) {
        client.send(reply(200, request.path == "/v1/models" ? modelList({"x", "wanted"}) : chatReply("two")));
    });
    EXPECT_EQ(patient({.model = "wanted", .ports = {first.port(), second.port()}}).respond(anyRequest),
              "two");
    EXPECT_EQ(patient({.model = "nobody's", .ports = {first.port(), second.port()}}).respond(anyRequest),
              "one");
    EXPECT_EQ(Json::parse(first.requests().back().body)["model"], "nobody's");
}

TEST(LocalModel, WithoutANameTheFirstListedModelIsAsked) {
    const ScriptedServer server([](const Connection& client, const Request& request) {
        client.send(reply(200, request.path == "/v1/models" ? modelList({"b", "a"}) : chatReply("x")));
    });
    EXPECT_TRUE(named(server).respond(anyRequest));
    EXPECT_EQ(Json::parse(server.requests().back().body)["model"], "b");
}

TEST(LocalModel, ServerThatListsNothingIsAskedWhenBothAreNamed) {
    const ScriptedServer server([](const Connection& client, const Request& request) {
        client.send(request.method == "POST" ? reply(200, chatReply("x")) : reply(404, "{}"));
    });
    EXPECT_EQ(patient({.url = server.url(), .model = "m"}).respond(anyRequest).value_or("error"), "x");
    EXPECT_FALSE(patient({.url = server.url()}).respond(anyRequest));
    EXPECT_FALSE(patient({.model = "m", .ports = {server.port()}}).respond(anyRequest));
}

TEST(LocalModel, CloudModelsAreNeverAsked) {
    const ScriptedServer mixed([](const Connection& client, const Request& request) {
        client.send(
            reply(200, request.path == "/v1/models" ? modelList({"big:cloud", "small:3b"}) : chatReply("x")));
    });
    EXPECT_TRUE(named(mixed).respond(anyRequest));
    EXPECT_EQ(Json::parse(mixed.requests().back().body)["model"], "small:3b");

    const ScriptedServer onlyCloud(listing({"big:cloud"}));
    EXPECT_EQ(reasonOf(named(onlyCloud)), Reason::other);
    EXPECT_FALSE(named(onlyCloud).respond(anyRequest));
    const LocalModel wanted = patient({.url = onlyCloud.url(), .model = "big:cloud"});
    EXPECT_EQ(reasonOf(wanted), Reason::deviceNotEligible);
    EXPECT_FALSE(wanted.respond(anyRequest));
    for (const Request& request : onlyCloud.requests())
        EXPECT_EQ(request.method, "GET");
}

TEST(LocalModel, V1InTheAddressIsNotDoubled) {
    const ScriptedServer server(modelServer(200, chatReply("x")));
    for (const char* end : {"", "/", "/v1", "/v1/"})
        EXPECT_TRUE(patient({.url = server.url() + end}).respond(anyRequest)) << end;
    for (const std::string& path : pathsOf(server))
        EXPECT_TRUE(path == "GET /v1/models" || path == "GET /health" || path == "POST /api/show" ||
                    path == "POST /v1/chat/completions")
            << path;
}

TEST(LocalModel, SocketIsAsGoodAsAPort) {
    const ScopedEnvironment shortPaths({{"TMPDIR", std::nullopt}});  // a socket's path has to be short
    const TempTree tree;
    const ScriptedServer server(modelServer(200, chatReply("x")), tree.path("model.sock"));
    const LocalModel model = patient({.url = "unix:" + tree.path("model.sock")});
    EXPECT_FALSE(model.absence());
    EXPECT_EQ(model.respond(anyRequest).value_or("error"), "x");
}

TEST(LocalModel, ServerThatIsStartedLaterIsFound) {
    const std::uint16_t nobody = refusingPort();
    EXPECT_TRUE(patient({.ports = {nobody}}).absence());
    const ScriptedServer server(listing({"a"}));
    const LocalModel model = patient({.ports = {nobody, server.port()}});
    EXPECT_FALSE(model.absence());
}

// Where models run

/// A server that lists models, knows which of them run elsewhere, and answers every request.
ScriptedServer::Script showing(std::vector<std::string> names, std::vector<std::string> elsewhere) {
    return [names = std::move(names), elsewhere = std::move(elsewhere)](const Connection& client,
                                                                        const Request& request) {
        if (request.path == "/v1/models") {
            client.send(reply(200, modelList(names)));
        } else if (request.path == "/api/show") {
            const std::string model = Json::parse(request.body)["model"];
            const bool isElsewhere = std::ranges::find(elsewhere, model) != elsewhere.end();
            client.send(reply(200, isElsewhere ? R"({"remote_model":"m","remote_host":"https://example.com"})"
                                               : R"({"modelfile":"FROM x"})"));
        } else {
            client.send(request.path == "/health" ? reply(404, "") : reply(200, chatReply("x")));
        }
    };
}

int timesAsked(const ScriptedServer& server, std::string_view path) {
    return static_cast<int>(std::ranges::count(server.requests(), path, &Request::path));
}

TEST(LocalModel, ModelOfAnOrdinaryNameThatRunsElsewhereIsNeverAsked) {
    const ScriptedServer server(showing({"a", "copy"}, {"copy"}));
    for (const LocalModel& model : {patient({.url = server.url(), .model = "copy"}),
                                    patient({.model = "copy", .ports = {server.port()}})}) {
        EXPECT_EQ(reasonOf(model), Reason::deviceNotEligible);
        EXPECT_TRUE(model.absence()->detail.contains("bulut modeli")) << model.absence()->detail;
        EXPECT_FALSE(model.respond(anyRequest));
    }
    EXPECT_EQ(timesAsked(server, "/v1/chat/completions"), 0);
    EXPECT_FALSE(patient({.url = server.url(), .model = "a"}).absence());
}

TEST(LocalModel, FirstListedModelThatRunsHereIsAsked) {
    const ScriptedServer server(showing({"big", "x:cloud@1", "huge", "small", "tiny"}, {"big", "huge"}));
    EXPECT_TRUE(named(server).respond(anyRequest));
    EXPECT_EQ(Json::parse(server.requests().back().body)["model"], "small");
    EXPECT_EQ(timesAsked(server, "/api/show"), 3);
}

TEST(LocalModel, WithoutAModelThatRunsHereTheNextPortIsTried) {
    const std::vector<std::string> all = {"1", "2", "3", "4", "5", "6"};
    const ScriptedServer elsewhere(showing(all, all));
    const ScriptedServer here(showing({"a"}, {}));
    EXPECT_EQ(reasonOf(named(elsewhere)), Reason::other);
    EXPECT_EQ(timesAsked(elsewhere, "/api/show"), 4);
    EXPECT_FALSE(named(elsewhere).respond(anyRequest));
    EXPECT_TRUE(patient({.ports = {elsewhere.port(), here.port()}}).respond(anyRequest));
    EXPECT_EQ(timesAsked(elsewhere, "/v1/chat/completions"), 0);
    EXPECT_EQ(timesAsked(here, "/v1/chat/completions"), 1);
}

/// A server that answers with `show` when asked where a model runs, and would also answer about folders.
ScriptedServer::Script whereabouts(ScriptedServer::Script show) {
    return [show = std::move(show)](const Connection& client, const Request& request) {
        if (request.path == "/api/show")
            show(client, request);
        else
            modelServer(200, chatReply("x"))(client, request);
    };
}

ScriptedServer::Script always(std::string sent) {
    return [sent = std::move(sent)](const Connection& client, const Request&) { client.send(sent); };
}

TEST(LocalModel, ServerThatDoesNotKnowWhereModelsRunHasItsOwn) {
    for (const std::string& sent :
         {reply(404, "no"), reply(404, R"({"error":{"code":404,"message":"File Not Found"}})"),
          reply(405, R"({"detail":"Method Not Allowed"})"), reply(501, ""),
          reply(200, R"_({"error":"Unexpected endpoint or method. (POST /api/show)"})_"),
          reply(200, R"({"remote_host":""})")}) {
        const ScriptedServer server(whereabouts(always(sent)));
        EXPECT_EQ(named(server).respond(anyRequest).value_or("error"), "x") << sent;
    }
}

TEST(LocalModel, ServerThatLeavesOpenWhereItsModelRunsIsNotAskedAboutFolders) {
    const std::vector<ScriptedServer::Script> shows = {
        always(reply(500, R"({"error":"x"})")),
        always(reply(503, "")),
        always(reply(401, R"({"error":"unauthorized"})")),
        always(reply(302, "", "Location: /elsewhere\r\n")),
        always(reply(200, "<html>")),
        always(reply(200, R"(["remote_host"])")),
        always(reply(200, R"({"error":"busy"})")),
        always(reply(200, R"({"remote_host":true})")),
        always(reply(200, std::string(1'000'000, ' '))),
        always("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{\"modelfile\":"),
        always(""),
        [](const Connection& client, const Request&) { client.waitForItsEnd(); },
    };
    for (std::size_t i = 0; i < shows.size(); ++i) {
        const ScriptedServer server(whereabouts(shows[i]));
        for (const std::optional<std::string>& model :
             {std::optional<std::string>(), std::optional<std::string>("test-model")}) {
            const bool isSilent = i == shows.size() - 1;
            const LocalModel local({.url = server.url(),
                                    .model = model,
                                    .namedDeadline = 60s,
                                    .showDeadline = isSilent ? 100ms : 60'000ms});
            const auto absence = local.absence();
            ASSERT_TRUE(absence) << i;
            EXPECT_EQ(absence->reason, Reason::other) << i;
            EXPECT_TRUE(absence->detail.contains("\"test-model\" modelinin nerede çalıştığı sorulunca"))
                << absence->detail;
            EXPECT_EQ(absence->detail.contains("1 saniye içinde yanıt vermedi"), isSilent) << absence->detail;
            EXPECT_FALSE(local.respond(anyRequest)) << i;
        }
        EXPECT_EQ(timesAsked(server, "/v1/chat/completions"), 0) << i;
    }
}

TEST(LocalModel, ServerThatSaysOnlyAfterTheDeadlineThatItPassesRequestsOnIsNotAsked) {
    const ScriptedServer server(whereabouts([](const Connection& client, const Request&) {
        (void)client.isGoneWithin(60s);
        client.send(reply(200, R"({"remote_model":"m","remote_host":"https://example.com"})"));
    }));
    const LocalModel model({.url = server.url(), .namedDeadline = 60s, .showDeadline = 100ms});
    EXPECT_FALSE(model.respond(anyRequest));
    EXPECT_EQ(timesAsked(server, "/v1/chat/completions"), 0);
}

TEST(LocalModel, ServerThatKnowsTheQuestionHasToAnswerItForEachModel) {
    const ScriptedServer server([&](const Connection& client, const Request& request) {
        if (request.path == "/api/show" && request.body.contains("second"))
            client.send(reply(404, "no"));
        else
            showing({"first", "second"}, {"first"})(client, request);
    });
    EXPECT_FALSE(named(server).respond(anyRequest));
    EXPECT_EQ(timesAsked(server, "/v1/chat/completions"), 0);
}

TEST(LocalModel, ServerThatPassesRequestsOnHasToAnswerForEachModel) {
    const ScriptedServer server([&](const Connection& client, const Request& request) {
        if (request.path == "/api/show" && request.body.contains("second"))
            return;  // closed without an answer
        showing({"first", "second"}, {"first"})(client, request);
    });
    EXPECT_EQ(reasonOf(named(server)), Reason::other);
    EXPECT_EQ(timesAsked(server, "/api/show"), 2);
}

/// Whether a server that takes more than half of `whole` to list its models is still asked for its health,
/// but only for the remaining time.
bool isOneTimeShared(std::chrono::milliseconds whole) {
    bool isAvailable = false;
    int timesAskedForHealth = 0;
    std::chrono::steady_clock::duration waited{};
    {
        const ScriptedServer server([&](const Connection& client, const Request& request) {
            if (request.path == "/v1/models") {
                (void)client.isGoneWithin(whole * 6 / 10);
                client.send(reply(200, modelList({"a"})));
            } else if (request.path == "/health") {
                const auto start = std::chrono::steady_clock::now();
                client.waitForItsEnd();
                waited = std::chrono::steady_clock::now() - start;
            } else {
                client.send(reply(404, ""));
            }
        });
        const LocalModel model({.ports = {server.port()}, .probeDeadline = whole, .showDeadline = 60s});
        isAvailable = !model.absence();
        timesAskedForHealth = timesAsked(server, "/health");
    }  // its measurements are complete once the server has stopped
    return isAvailable && timesAskedForHealth == 1 && waited < whole * 9 / 10;
}

TEST(LocalModel, QuestionsToOneServerShareOneTime) {
    // A stalled machine misses a short deadline, so longer ones are tried.
    bool isShared = false;
    for (std::chrono::milliseconds whole = 2s; !isShared && whole < 40s; whole *= 2)
        isShared = isOneTimeShared(whole);
    EXPECT_TRUE(isShared);
}

// What is remembered

TEST(LocalModel, ServerThatWasFoundIsNotLookedForAgainWhileItAnswers) {
    const ScriptedServer other(
        [](const Connection& client, const Request&) { client.send(reply(404, "no")); });
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const LocalModel model = patient({.ports = {other.port(), server.port()}});
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(model.absence());
        EXPECT_TRUE(model.respond(anyRequest));
    }
    EXPECT_EQ(other.requests().size(), 1U);
}

TEST(LocalModel, ServerThatHasGoneIsForgottenAndTheNextIsFound) {
    const ScriptedServer next(modelServer(200, chatReply("next")));
    auto first = std::make_unique<ScriptedServer>(modelServer(200, chatReply("first")));
    const LocalModel model = patient({.ports = {first->port(), next.port()}});
    EXPECT_FALSE(model.absence());
    EXPECT_EQ(model.respond(anyRequest).value_or("error"), "first");
    first.reset();
    EXPECT_EQ(model.respond(anyRequest).value_or("error"), "next");
    EXPECT_FALSE(model.absence());
}

TEST(LocalModel, ModelThatRunsElsewhereByNowIsNotAsked) {
    std::atomic<bool> isElsewhere = false;
    const ScriptedServer server([&](const Connection& client, const Request& request) {
        showing({"a"}, isElsewhere ? std::vector<std::string>{"a"} : std::vector<std::string>{})(client,
                                                                                                 request);
    });
    const LocalModel model = patient({.ports = {server.port()}});
    EXPECT_TRUE(model.respond(anyRequest));
    isElsewhere = true;
    EXPECT_FALSE(model.respond(anyRequest));
    EXPECT_EQ(timesAsked(server, "/v1/chat/completions"), 1);
    EXPECT_TRUE(model.absence());
}

TEST(LocalModel, HungListenerCostsItsTimeOnce) {
    const ScriptedServer hung([](const Connection& client, const Request&) { client.waitForItsEnd(); });
    const LocalModel model({.ports = {hung.port()}, .probeDeadline = 50ms, .silencePause = 10min});
    for (int i = 0; i < 5; ++i) {
        const auto absence = model.absence();
        ASSERT_TRUE(absence);
        EXPECT_TRUE(absence->isSilent) << "somebody is there";
    }
    EXPECT_FALSE(model.respond(anyRequest));
    EXPECT_EQ(hung.requests().size(), 1U);
}

/// A server that does not answer while it is busy.
ScriptedServer::Script answeringUnless(const std::atomic<bool>& isBusy) {
    return [&isBusy](const Connection& client, const Request& request) {
        if (isBusy)
            client.waitForItsEnd();
        else
            modelServer(200, chatReply("x"))(client, request);
    };
}

TEST(LocalModel, ListenerThatWasTooBusyAtFirstIsFoundAfterAPause) {
    std::atomic<bool> isBusy = true;
    const ScriptedServer server(answeringUnless(isBusy));
    const LocalModel model({.ports = {server.port()}, .probeDeadline = 50ms, .silencePause = 1ms});
    EXPECT_TRUE(model.absence());
    isBusy = false;
    const auto isFound = waitUntil([&] { return !model.absence(); });
    EXPECT_TRUE(isFound);
}

TEST(LocalModel, BusyServerIsSilentNotGoneAndAnswersWhatItIsAsked) {
    std::atomic<bool> isBusy = false;
    const ScriptedServer server([&](const Connection& client, const Request& request) {
        if (isBusy && request.path == "/v1/models")
            client.waitForItsEnd();
        else
            modelServer(200, chatReply("x"))(client, request);
    });
    for (const auto& url : {std::optional<std::string>(), std::optional(server.url())}) {
        isBusy = false;
        const LocalModel model({.url = url,
                                .ports = {server.port()},
                                .probeDeadline = 2s,
                                .namedDeadline = 2s,
                                .showDeadline = 60s});
        ASSERT_FALSE(model.absence());
        isBusy = true;
        const auto absence = model.absence();
        ASSERT_TRUE(absence);
        EXPECT_TRUE(absence->isSilent);
        EXPECT_EQ(model.respond(anyRequest).value_or("error"), "x");
        isBusy = false;
        EXPECT_FALSE(model.absence());
    }
}

TEST(LocalModel, ServerThatHasGoneIsNotTakenForBusyBecauseSomebodyElseIsSilent) {
    const ScriptedServer hung([](const Connection& client, const Request&) { client.waitForItsEnd(); });
    auto server = std::make_unique<ScriptedServer>(modelServer(200, chatReply("x")));
    const LocalModel model({.ports = {hung.port(), server->port()},
                            .probeDeadline = 2s,
                            .showDeadline = 60s,
                            .silencePause = 10min});
    ASSERT_FALSE(model.absence());
    server.reset();
    for (int i = 0; i < 2; ++i) {
        const auto absence = model.absence();
        ASSERT_TRUE(absence);
        EXPECT_FALSE(absence->isSilent);
    }
    const auto answer = model.respond(anyRequest);
    ASSERT_FALSE(answer);
    EXPECT_FALSE(answer.error().isSilent);
}

TEST(LocalModel, ServerThatAnswersNothingMoreIsToldOfAndNotForgotten) {
    std::atomic<bool> isBusy = false;
    const ScriptedServer server(answeringUnless(isBusy));
    const LocalModel model({.ports = {server.port()},
                            .probeDeadline = 2s,
                            .showDeadline = 60s,
                            .answerDeadline = 2s,
                            .silencePause = 10min});
    ASSERT_FALSE(model.absence());
    isBusy = true;
    for (int i = 0; i < 2; ++i) {
        const auto answer = model.respond(anyRequest);
        ASSERT_FALSE(answer);
        EXPECT_TRUE(answer.error().isSilent);
        EXPECT_TRUE(answer.error().text.contains("yanıt vermedi")) << answer.error().text;
    }
    isBusy = false;
    EXPECT_EQ(model.respond(anyRequest).value_or("error"), "x");
    EXPECT_FALSE(model.absence());
}

TEST(LocalModel, PortWhereTheModelWasFoundIsNotPassedOverForItsSilence) {
    enum class Mood : std::uint8_t { fine, failing, hung };
    std::atomic<Mood> mood = Mood::fine;
    const ScriptedServer server([&](const Connection& client, const Request& request) {
        if (mood == Mood::hung)
            client.waitForItsEnd();
        else
            modelServer(mood == Mood::fine ? 200 : 500, chatReply("x"))(client, request);
    });
    const LocalModel model(
        {.ports = {server.port()}, .probeDeadline = 2s, .showDeadline = 60s, .silencePause = 10min});
    ASSERT_FALSE(model.absence());
    mood = Mood::failing;
    EXPECT_FALSE(model.respond(anyRequest)) << "and is looked for anew";
    mood = Mood::hung;
    const auto absence = model.absence();
    ASSERT_TRUE(absence);
    EXPECT_TRUE(absence->isSilent);
    EXPECT_TRUE(absence->detail.contains("yanıt vermedi")) << absence->detail;
    mood = Mood::fine;
    EXPECT_FALSE(model.absence());
}

// One request

TEST(LocalModel, AnswerIsTheContentOfTheMessage) {
    const ScriptedServer server(modelServer(200, chatReply("{\"a\":\"ş\"}")));
    EXPECT_EQ(named(server).respond(anyRequest).value_or("error"), "{\"a\":\"ş\"}");
    const Request chat = server.requests().back();
    EXPECT_EQ(chat.method, "POST");
    EXPECT_TRUE(chat.headers.contains("Content-Type: application/json"));
    EXPECT_FALSE(chat.headers.contains("Expect:"));
    EXPECT_EQ(Json::parse(chat.body)["messages"][1]["content"], "p");
}

TEST(LocalModel, EachRequestIsASessionOfItsOwn) {
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const LocalModel model = named(server);
    EXPECT_TRUE(model.respond(anyRequest));
    const std::string first = server.requests().back().body;
    EXPECT_TRUE(model.respond(anyRequest));
    EXPECT_EQ(server.requests().back().body, first);
}

TEST(LocalModel, LongFactsArriveWhole) {
    const ScriptedServer server(modelServer(200, chatReply("x")));
    ModelRequest request = anyRequest;
    request.prompt = std::string(2'000'000, 'x');
    EXPECT_TRUE(named(server).respond(request));
    EXPECT_EQ(Json::parse(server.requests().back().body)["messages"][1]["content"], request.prompt);
}

TEST(LocalModel, VerdictComesThroughFromTheSocketToTheClassifier) {
    const ScriptedServer server(modelServer(
        200,
        chatReply(R"({"level":"regenerable","title":"Önbellek","reason":"Yine oluşur.","confidence":91})")));
    const auto verdict = AIClassifier::classify("full", "minimal", named(server));
    ASSERT_TRUE(verdict) << verdict.error().description();
    EXPECT_EQ(*verdict, (Verdict{.level = SafetyLevel::regenerable,
                                 .title = "Önbellek",
                                 .explanation = "Yine oluşur.",
                                 .source = VerdictSource::ai,
                                 .confidence = 91}));
}

TEST(LocalModel, SeveralRequestsMayRunAtOnce) {
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const LocalModel model = named(server);
    std::vector<std::jthread> threads;
    std::atomic<int> answered = 0;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] { answered += model.respond(anyRequest) ? 1 : 0; });
    threads.clear();
    EXPECT_EQ(answered, 8);
}

// Stopping

TEST(LocalModel, StopEndsARequestThatIsNeverAnsweredAtOnce) {
    std::stop_source stop;
    const ScriptedServer server(modelServer([&](const Connection& client, const Request&) {
        // Nothing will ever come back, yet the client waits longer than any timer of its own.
        EXPECT_FALSE(client.isGoneWithin(300ms));
        stop.request_stop();
        client.waitForItsEnd();
    }));
    const auto start = std::chrono::steady_clock::now();
    const LocalModel model({.url = server.url(), .namedDeadline = 10min, .answerDeadline = 10min});
    const auto answer = model.respond(anyRequest, stop.get_token());
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().text, "İstek durduruldu.");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 60s);
}

TEST(LocalModel, StopEndsTheSearchForAServer) {
    std::stop_source stop;
    const ScriptedServer server([&](const Connection& client, const Request&) {
        stop.request_stop();
        client.waitForItsEnd();
    });
    const LocalModel model({.ports = {server.port(), server.port(), server.port()}, .probeDeadline = 10min});
    EXPECT_TRUE(model.absence(stop.get_token()));
    EXPECT_FALSE(model.respond(anyRequest, stop.get_token()));
}

TEST(LocalModel, StopAtAnyStageIsSaidAndNobodyElseIsAsked) {
    for (const char* stage : {"/v1/models", "/health", "/api/show"}) {
        std::stop_source stop;
        const ScriptedServer server([&](const Connection& client, const Request& request) {
            if (request.path == stage)
                stop.request_stop();
            modelServer(200, chatReply("x"))(client, request);
        });
        const SilentListener next;
        const LocalModel model = patient({.ports = {server.port(), next.port()}});
        const auto absence = model.absence(stop.get_token());
        ASSERT_TRUE(absence) << stage;
        EXPECT_EQ(absence->reason, Reason::other) << stage;
        EXPECT_EQ(absence->detail, "İstek durduruldu.") << stage;
        EXPECT_EQ(server.requests().back().path, stage);
        EXPECT_FALSE(next.wasContacted()) << stage;
    }
}

TEST(LocalModel, NobodyIsAskedAfterAStop) {
    const SilentListener nobody;
    std::stop_source stop;
    stop.request_stop();
    for (const LocalModel& model : {patient({.url = nobody.url()}), patient({.ports = {nobody.port()}})}) {
        EXPECT_EQ(model.absence(stop.get_token())->detail, "İstek durduruldu.");
        EXPECT_EQ(model.respond(anyRequest, stop.get_token()).error().text, "İstek durduruldu.");
    }
    EXPECT_FALSE(nobody.wasContacted());
}

// The environment

TEST(LocalModelSettings, ComeFromTheEnvironment) {
    const ScopedEnvironment environment(
        {{"ULVAK_MODEL_URL", "http://127.0.0.1:9"}, {"ULVAK_MODEL", "m"}, {"ULVAK_MODEL_OFF", "1"}});
    const LocalModelSettings settings = LocalModelSettings::fromEnvironment();
    EXPECT_EQ(settings.url, "http://127.0.0.1:9");
    EXPECT_EQ(settings.model, "m");
    EXPECT_TRUE(settings.isOff);
    EXPECT_EQ(settings.ports, (std::vector<std::uint16_t>{8080, 11434, 1234}));
}

TEST(LocalModelSettings, EmptyVariablesCountAsUnset) {
    for (const char* off : {"", "0"}) {
        const ScopedEnvironment environment(
            {{"ULVAK_MODEL_URL", ""}, {"ULVAK_MODEL", ""}, {"ULVAK_MODEL_OFF", off}});
        const LocalModelSettings settings = LocalModelSettings::fromEnvironment();
        EXPECT_EQ(settings.url, std::nullopt);
        EXPECT_EQ(settings.model, std::nullopt);
        EXPECT_FALSE(settings.isOff);
    }
    const ScopedEnvironment environment({{"ULVAK_MODEL_OFF", "no"}});
    EXPECT_TRUE(LocalModelSettings::fromEnvironment().isOff);
}

}  // namespace
}  // namespace ulvak::platform

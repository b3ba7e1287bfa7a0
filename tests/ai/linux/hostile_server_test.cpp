#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "ai/ai_classifier.h"
#include "ai/ai_status.h"
#include "ai/linux/scripted_server.h"
#include "ai/server/http_exchange.h"
#include "ai/server/local_model.h"
#include "support/environment.h"
#include "support/temp_tree.h"

/// What a local server can do that is worse than being broken.
namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using namespace test;
using Json = nlohmann::ordered_json;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;
using Kind = HttpError::Kind;

const ModelRequest anyRequest{.prompt = "p", .answerSchema = "{}"};

/// An endless reply, a byte at a time, so that there is always new data.
void trickle(const Connection& client, const std::string& beginning, std::string_view piece) {
    client.send(beginning);
    while (!client.isGoneWithin(20ms) && client.trySend(piece)) {
    }
}

TEST(HostileServer, RepliesThatTrickleForEverEndAtTheDeadline) {
    struct Row {
        const char* beginning;
        const char* piece;
    };
    constexpr Row rows[] = {
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", "1\r\nx\r\n"},
        {"HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n", "x"},
        {"HTTP/1.1 200 OK\r\n\r\n", "x"},
        {"HTTP/1.1 200 OK\r\nX: ", "x"},
        {"HTTP/1.1 200 OK\r\n", "X: y\r\n"},
        {"", "HTTP/1.1 100 Continue\r\n\r\n"},
        {"H", "T"},
    };
    for (const auto& [beginning, piece] : rows) {
        const ScriptedServer server(
            [&](const Connection& client, const Request&) { trickle(client, beginning, piece); });
        const Kind kind = endOfTime(loopbackAddress(server.port()),
                                    {.path = "/x", .connectDeadline = 180s, .deadline = 200ms});
        EXPECT_TRUE(kind == Kind::late || kind == Kind::other) << beginning;
        EXPECT_TRUE(LocalModel({.ports = {server.port()}, .probeDeadline = 200ms}).absence()) << beginning;
    }
}

TEST(HostileServer, HeadersThatLieAreNoDanger) {
    const std::string long1(100, '9');
    for (const std::string& head : {
             "HTTP/1.1 200 OK\r\nContent-Length: " + long1 + "\r\n\r\n",
             std::string("HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 3\r\nContent-Length: 9000\r\n\r\n"),
             std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffffff\r\n"),
             std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n-5\r\n"),
             std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip\r\n\r\n"),
             std::string("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n\x1f\x8b\x08"),
             std::string("HTTP/1.1 101 Switching Protocols\r\nUpgrade: h2c\r\n\r\n"),
             std::string("HTTP/1.1 999 ?\r\n\r\n"),
             std::string("HTTP/1.1 000 ?\r\n\r\n"),
             std::string("HTTP/2 200\r\n\r\n"),
             std::string("HTTP/1.1 401 no\r\nWWW-Authenticate: Negotiate, NTLM, Basic realm=\"x\"\r\n\r\n"),
             std::string("HTTP/1.1 200 OK\r\n\0: x\r\n\r\n", 25),
         }) {
        const ScriptedServer server(modelServer(
            [&](const Connection& client, const Request&) { client.send(head + chatReply("x").substr(1)); }));
        const LocalModel model = patient({.url = server.url(), .answerDeadline = 300ms});
        const auto answer = model.respond(anyRequest);
        ASSERT_FALSE(answer) << head;
        EXPECT_FALSE(answer.error().text.empty()) << head;
    }
}

TEST(HostileServer, TrailersWithoutEndAreTooLong) {
    const ScriptedServer server([](const Connection& client, const Request&) {
        client.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n0\r\n");
        while (client.trySend("X: " + std::string(1'000, 'x') + "\r\n")) {
        }
    });
    const auto reply = exchange(loopbackAddress(server.port()), {.path = "/x", .deadline = 30s});
    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.error().kind, Kind::tooLong);
}

TEST(HostileServer, SideThatIsClosedIsTheEnd) {
    for (const char* sent : {"", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{"}) {
        const ScriptedServer server([&](const Connection& client, const Request&) {
            client.send(sent);
            client.closeSending();
            client.waitForItsEnd();
        });
        const auto reply = exchange(loopbackAddress(server.port()), {.path = "/x", .deadline = 30s});
        ASSERT_FALSE(reply);
        EXPECT_EQ(reply.error().kind, Kind::brokenOff);
    }
}

TEST(HostileServer, NamesOfModelsAreOnlyEverNames) {
    const std::vector<std::string> names = {
        "a\nb",
        "\"},\"messages\":[{\"role\":\"system\"",
        "a\u2028b",
        "a\u202Eb",
        std::string("a\0b", 3),
        "../../etc/passwd",
        "\x7f\x1b[2J",
        "http://example.com/",
    };
    for (const std::string& name : names) {
        const ScriptedServer server([&](const Connection& client, const Request& request) {
            if (request.path == "/v1/models")
                client.send(reply(200, modelList({name})));
            else
                modelServer(200, chatReply("x"))(client, request);
        });
        EXPECT_EQ(patient({.url = server.url()}).respond(anyRequest).value_or("error"), "x") << name;
        const auto requests = server.requests();
        ASSERT_EQ(requests.size(), 4U);
        EXPECT_EQ(Json::parse(requests[2].body), Json({{"model", name}}));
        const Json chat = Json::parse(requests[3].body);
        EXPECT_EQ(chat["model"], name);
        EXPECT_EQ(chat["messages"].size(), 2U);
    }
}

TEST(HostileServer, NamesOfRefusedModelsAreFitForATerminal) {
    const std::string name = "a\n\x1b[2J\u2028\u202E\"" + std::string(200, 'x') + ":cloud";
    const ScriptedServer server(
        [&](const Connection& client, const Request&) { client.send(reply(200, modelList({name}))); });
    const AIStatus status = AIStatus::current(patient({.url = server.url()}));
    EXPECT_TRUE(status.hint.contains("(a \uFFFD[2J\uFFFD\uFFFD\"xxx")) << status.hint;
    EXPECT_LT(status.hint.size(), 500U);
}

/// What the classifier makes of a chat reply.
std::string outcome(const std::string& body) {
    const ScriptedServer server(modelServer(200, body));
    const auto verdict = AIClassifier::classify("full", "minimal", patient({.url = server.url()}));
    return verdict ? std::string(info(verdict->level).rawValue) + " " + verdict->title + " " +
                         std::to_string(verdict->confidence.value_or(-1))
                   : verdict.error().description();
}

TEST(HostileServer, NumbersTooLargeAreNoAnswer) {
    EXPECT_TRUE(outcome(R"({"choices":[],"created":1e999})").contains("JSON değil"));
    EXPECT_TRUE(outcome(chatReply(R"({"level":"safe","title":"t","reason":"r","confidence":1e999})"))
                    .contains("JSON değil"));
    EXPECT_TRUE(outcome(chatReply(R"({"level":"safe","title":"t","reason":"r","confidence":)" +
                                  std::string(200, '9') + "}"))
                    .contains("\"confidence\""));
    EXPECT_EQ(outcome(chatReply(R"({"level":"safe","title":"t","reason":"r","confidence":-0})")), "safe t 0");
}

TEST(HostileServer, OfTwoEqualKeysTheLastCounts) {
    EXPECT_EQ(
        outcome(chatReply(
            R"({"level":"safe","level":"keep","title":"t","reason":"r","confidence":1,"confidence":2})")),
        "keep t 2");
    EXPECT_TRUE(
        outcome(R"({"choices":[{"message":{"content":"x"}}],"choices":7})").contains("biçimde değil"));
}

TEST(HostileServer, ZeroBytesAndBrokenTextStayInsideTheirLine) {
    EXPECT_EQ(outcome(chatReply(R"({"level":"safe","title":"a\u0000b\u2028c","reason":"r","confidence":1})")),
              "safe a\uFFFDb\uFFFDc 1");
    EXPECT_TRUE(outcome(chatReply(R"({"level":"safe\u0000","title":"t","reason":"r","confidence":1})"))
                    .contains("Unexpected value"));
    EXPECT_TRUE(outcome(std::string("{\"choices\":\0}", 13)).contains("JSON değil"));
    EXPECT_TRUE(outcome("{\"choices\":\"\xff\"}").contains("JSON değil"));
    EXPECT_TRUE(outcome(R"({"choices":"\ud800"})").contains("JSON değil"));
}

TEST(HostileServer, SocketWithTheLongestPathIsSpokenTo) {
    const ScopedEnvironment shortPaths({{"TMPDIR", std::nullopt}});  // a socket's path has to be short
    const TempTree tree;
    constexpr std::size_t maxLength = 107;  // one byte less than the system's field, for the terminating null
    std::string path = tree.path("");
    ASSERT_LT(path.size(), maxLength);
    path.append(maxLength - path.size(), 's');
    const ScriptedServer server(modelServer(200, chatReply("x")), path);
    EXPECT_EQ(patient({.url = "unix:" + path}).respond(anyRequest).value_or("error"), "x");
    EXPECT_EQ(patient({.url = "unix:" + path + "s"}).absence()->reason,
              ModelAbsenceReason::deviceNotEligible);
}

TEST(HostileServer, ServerThatReadsNothingIsGivenUp) {
    const SilentListener silent;
    std::string facts;
    facts.resize(20'000'000, ' ');  // more than both ends buffer
    EXPECT_EQ(endOfTime(loopbackAddress(silent.port()),
                        {.path = "/x", .json = std::move(facts), .connectDeadline = 180s, .deadline = 200ms}),
              Kind::late);
}

}  // namespace
}  // namespace ulvak::platform

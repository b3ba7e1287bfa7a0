#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "ai/ai_classifier.h"
#include "ai/linux/scripted_server.h"
#include "ai/linux/socket_watch.h"
#include "ai/server/http_exchange.h"
#include "ai/server/local_model.h"
#include "support/environment.h"

/// Nothing leaves the machine, whatever the user's settings, the environment or the server say.
namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Not;
using Connection = ScriptedServer::Connection;
using Request = ScriptedServer::Request;

const ModelRequest anyRequest{.prompt = "secret facts", .answerSchema = "{}"};
const auto isLoopback = AnyOf(Eq("127.0.0.1"), Eq("::1"));

/// An IPv4 address of this machine that others can reach.
std::optional<std::string> ownAddress() {
    ifaddrs* all = nullptr;
    if (::getifaddrs(&all) != 0)
        return std::nullopt;
    std::optional<std::string> found;
    for (const ifaddrs* one = all; one != nullptr && !found; one = one->ifa_next) {
        if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET ||
            (one->ifa_flags & IFF_LOOPBACK) != 0)
            continue;
        std::array<char, INET_ADDRSTRLEN> text{};
        ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(one->ifa_addr)->sin_addr, text.data(),
                    text.size());
        found = text.data();
    }
    ::freeifaddrs(all);
    return found;
}

TEST(LoopbackOnly, WatchSeesWhatARequestConnectsTo) {
    // Without this the other tests would prove nothing.
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const SocketWatch watch;
    EXPECT_TRUE(patient({.url = server.url()}).respond(anyRequest));
    EXPECT_GT(watch.sockets(), 0);
    EXPECT_THAT(watch.destinations(), Not(IsEmpty()));
    EXPECT_THAT(watch.destinations(), Each(Eq("127.0.0.1")));
    EXPECT_EQ(watch.lookups(), 0);
}

TEST(LoopbackOnly, OtherHostsAreRefusedBeforeASocketIsOpenedOrANameLookedUp) {
    for (const char* url :
         {"http://192.0.2.1:8080", "http://model.example.com:8080", "http://localhost.example.com",
          "http://[2001:db8::1]:8080", "http://0.0.0.0:8080", "https://example.com/v1"}) {
        const SocketWatch watch;
        const LocalModel model = patient({.url = url});
        const auto absence = model.absence();
        ASSERT_TRUE(absence) << url;
        EXPECT_EQ(absence->reason, ModelAbsenceReason::deviceNotEligible) << url;
        const auto answer = AIClassifier::classify("secret facts", "secret facts", model);
        ASSERT_FALSE(answer) << url;
        EXPECT_TRUE(answer.error().description().contains("Yalnızca bu bilgisayardaki bir sunucu olabilir"))
            << url;
        EXPECT_TRUE(answer.error().description().contains("Hiçbir veri gönderilmedi.")) << url;
        EXPECT_EQ(watch.sockets(), 0) << url;
        EXPECT_EQ(watch.lookups(), 0) << url;
        EXPECT_THAT(watch.destinations(), IsEmpty()) << url;
    }
}

TEST(LoopbackOnly, OwnAddressOnANetworkIsRefusedAndNobodyKnocksThere) {
    const auto address = ownAddress();
    if (!address)
        GTEST_SKIP() << "this machine is on no network";
    const SilentListener listener(*address);
    EXPECT_FALSE(patient({.url = listener.url()}).respond(anyRequest));
    EXPECT_FALSE(listener.wasContacted());
}

TEST(LoopbackOnly, LocalNamesAreNotLookedUp) {
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const std::string port = std::to_string(server.port());
    for (const std::string host : {"localhost", "model.localhost", "LOCALHOST"}) {
        const SocketWatch watch;
        EXPECT_EQ(patient({.url = "http://" + host + ":" + port}).respond(anyRequest).value_or("error"), "x")
            << host;
        EXPECT_EQ(watch.lookups(), 0) << host;
        EXPECT_THAT(watch.destinations(), Each(isLoopback)) << host;
    }
}

TEST(LoopbackOnly, RedirectionsAreNotFollowed) {
    const SilentListener elsewhere;
    for (const int status : {301, 302, 303, 307, 308}) {
        const std::string location = "Location: " + elsewhere.url() + "/v1/chat/completions\r\n";
        const ScriptedServer chat(modelServer(
            [&](const Connection& client, const Request&) { client.send(reply(status, "", location)); }));
        const ScriptedServer everything(
            [&](const Connection& client, const Request&) { client.send(reply(status, "", location)); });
        const SocketWatch watch;
        const auto answer = patient({.url = chat.url()}).respond(anyRequest);
        ASSERT_FALSE(answer) << status;
        EXPECT_TRUE(answer.error().text.contains("yönlendirmeler izlenmez")) << answer.error().text;
        EXPECT_TRUE(patient({.url = everything.url()}).absence()) << status;
        EXPECT_THAT(watch.destinations(), Each(Eq("127.0.0.1")));
    }
    EXPECT_FALSE(elsewhere.wasContacted());
}

TEST(LoopbackOnly, ProxiesOfTheEnvironmentAreNotUsed) {
    const SilentListener proxy;
    const ScopedEnvironment environment({{"http_proxy", proxy.url()},
                                         {"https_proxy", proxy.url()},
                                         {"all_proxy", proxy.url()},
                                         {"HTTP_PROXY", proxy.url()},
                                         {"HTTPS_PROXY", proxy.url()},
                                         {"ALL_PROXY", proxy.url()},
                                         {"no_proxy", std::nullopt},
                                         {"NO_PROXY", std::nullopt}});
    const ScriptedServer server(modelServer(200, chatReply("x")));
    const std::string port = std::to_string(server.port());
    for (const std::string host : {"127.0.0.1", "localhost"})
        EXPECT_EQ(patient({.url = "http://" + host + ":" + port}).respond(anyRequest).value_or("error"), "x");
    EXPECT_EQ(patient({.ports = {server.port()}}).respond(anyRequest).value_or("error"), "x");
    EXPECT_FALSE(LocalModel({.url = "https://127.0.0.1:" + port, .namedDeadline = 50ms}).respond(anyRequest));
    EXPECT_FALSE(proxy.wasContacted());
}

TEST(LoopbackOnly, LastGateStopsAConnectionThatLeavesWhateverTheAddressSays) {
    const SocketWatch watch;
    const ModelAddress forged{.origin = "http://192.0.2.1:80", .port = 80};
    const auto answer = exchange(forged, {.path = "/v1/models", .json = "secret facts"});
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().kind, HttpError::Kind::unreachable);
    EXPECT_EQ(watch.sockets(), 0);
    EXPECT_THAT(watch.destinations(), IsEmpty());
}

TEST(LoopbackOnly, OtherProtocolsAreNotSpoken) {
    const SilentListener listener;
    for (const char* scheme : {"ftp", "file", "gopher", "telnet", "dict"}) {
        const std::string origin = std::string(scheme) + "://127.0.0.1:" + std::to_string(listener.port());
        EXPECT_FALSE(exchange(ModelAddress{.origin = origin, .port = listener.port()}, {.path = "/x"}))
            << scheme;
    }
    EXPECT_FALSE(listener.wasContacted());
}

TEST(LoopbackOnly, SearchForAServerStaysOnThisMachine) {
    const std::uint16_t nobody = refusingPort();
    const SocketWatch watch;
    EXPECT_TRUE(patient({.ports = {nobody, nobody}}).absence());
    EXPECT_THAT(watch.destinations(), ElementsAre("127.0.0.1", "127.0.0.1"));
    EXPECT_EQ(watch.lookups(), 0);
}

TEST(LoopbackOnly, ServerIsToldNothingBeforeItIsKnownToBeOne) {
    const ScriptedServer stranger(
        [](const Connection& client, const Request&) { client.send(reply(200, R"({"hello":"world"})")); });
    EXPECT_FALSE(patient({.url = stranger.url()}).respond(anyRequest));
    EXPECT_FALSE(patient({.ports = {stranger.port()}}).respond(anyRequest));
    for (const Request& request : stranger.requests()) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.body, "");
    }
}

}  // namespace
}  // namespace ulvak::platform

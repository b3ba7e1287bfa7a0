#include "platform/desktop.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/environment.h"
#include "support/isolation.h"
#include "support/record.h"

namespace ulvak::platform {
namespace {

using Role = SingleInstance::Role;

/// The requests a first instance has received.
using Received = test::Record<LaunchRequest>;

/// Runs `body` in a process with an empty session bus.
void withBus(const std::function<void()>& body) {
    test::inChild([&] {
        GTestDBus* session = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(session);
        body();
        g_test_dbus_down(session);
        g_object_unref(session);
    });
}

class OneInstance : public testing::Test {
protected:
    void SetUp() override {
#ifdef ULVAK_THREAD_SANITIZER
        GTEST_SKIP() << "the bus's library hands things from thread to thread unseen";
#endif
    }
};

TEST_F(OneInstance, TheSecondHandsItsRequestToTheFirst) {
    withBus([] {
        Received received;
        SingleInstance first("/ev", {});
        ASSERT_EQ(first.role(), Role::first);
        first.listen(
            [&](LaunchRequest request, const std::shared_ptr<void>&) { received.add(std::move(request)); });
        const LaunchRequest full{.arguments = {"--level=safe", "--autoscan", "ğüş \n"},
                                 .activationToken = "jeton"};
        EXPECT_EQ(SingleInstance("/ev", full).role(), Role::handedOver);
        EXPECT_EQ(SingleInstance("/ev", {}).role(), Role::handedOver);
        EXPECT_EQ(received.waitFor(2), (std::vector<LaunchRequest>{full, {}}));
    });
}

TEST_F(OneInstance, BytesThatAreNoTextAreLeftOut) {
    withBus([] {
        Received received;
        SingleInstance first("/ev", {});
        first.listen(
            [&](LaunchRequest request, const std::shared_ptr<void>&) { received.add(std::move(request)); });
        EXPECT_EQ(SingleInstance("/ev", {.arguments = {"\xff", "--autoscan"}}).role(), Role::handedOver);
        EXPECT_EQ(received.waitFor(1), (std::vector<LaunchRequest>{{.arguments = {"--autoscan"}}}));
    });
}

TEST_F(OneInstance, ARequestThatComesBeforeAnybodyListensIsKept) {
    withBus([] {
        Received received;
        SingleInstance first("/ev", {});
        std::thread second([] { EXPECT_EQ(SingleInstance("/ev", {}).role(), Role::handedOver); });
        first.listen(
            [&](LaunchRequest request, const std::shared_ptr<void>&) { received.add(std::move(request)); });
        second.join();
        EXPECT_EQ(received.waitFor(1).size(), 1U);
    });
}

TEST_F(OneInstance, OneThatDoesNotObeyIsSilent) {
    withBus([] {
        std::mutex mutex;
        std::shared_ptr<void> never;
        SingleInstance first("/ev", {});
        first.listen([&](const LaunchRequest&, std::shared_ptr<void> turn) {
            const std::scoped_lock lock(mutex);
            never = std::move(turn);
        });
        EXPECT_EQ(SingleInstance("/ev", {}).role(), Role::silent);
    });
}

TEST_F(OneInstance, EachPlaceHasItsOwn) {
    withBus([] {
        const SingleInstance first("/ev", {});
        const SingleInstance other("/başka ev", {});
        EXPECT_EQ(other.role(), Role::first);
    });
}

TEST_F(OneInstance, TheNextIsFirstWhenThatIsGone) {
    withBus([] {
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(SingleInstance("/ev", {}).role(), Role::first);
    });
}

TEST_F(OneInstance, WithoutABusEveryoneIsFirst) {
    for (const auto& address : {std::optional<std::string>("unix:path=/nonexistent"),
                                std::optional<std::string>("nonsense"), std::optional<std::string>()}) {
        const test::ScopedEnvironment environment(
            {{"DBUS_SESSION_BUS_ADDRESS", address}, {"XDG_RUNTIME_DIR", "/nonexistent"}});
        const SingleInstance first("/ev", {});
        EXPECT_EQ(first.role(), Role::first);
        EXPECT_EQ(SingleInstance("/ev", {}).role(), Role::first);
    }
}

}  // namespace
}  // namespace ulvak::platform

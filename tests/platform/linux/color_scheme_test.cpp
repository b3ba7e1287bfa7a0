#include "platform/desktop.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "support/isolation.h"
#include "support/linux/stand_in_portal.h"
#include "support/record.h"
#include "support/temp_tree.h"
#include "support/wait.h"

namespace ulvak::platform {
namespace {

using test::SessionBus;
using test::StandInPortal;

/// The schemes received, in order.
class Heard : public test::Record<ColorScheme> {
public:
    /// The scheme received at position `count`; an impossible value if there are not that many.
    [[nodiscard]] ColorScheme last(std::size_t count) const {
        const std::vector<ColorScheme> schemes = waitFor(count);
        return schemes.size() >= count ? schemes[count - 1] : static_cast<ColorScheme>(99);
    }
};

class ColorSchemeTest : public testing::TestWithParam<StandInPortal::Age> {
protected:
    void SetUp() override {
#ifdef ULVAK_THREAD_SANITIZER
        GTEST_SKIP() << "the bus's library hands things from thread to thread unseen";
#endif
    }
};

TEST_P(ColorSchemeTest, IsToldAtFirstAndWheneverItChanges) {
    test::inChild([] {
        const SessionBus bus;
        StandInPortal portal(bus, GetParam(), 1);
        Heard heard;
        const ColorSchemeWatch watch([&](ColorScheme scheme) { heard.add(scheme); });
        EXPECT_EQ(heard.last(1), ColorScheme::dark);
        portal.changeContrast(1);
        portal.change(2);
        EXPECT_EQ(heard.last(2), ColorScheme::light) << "and nothing of another setting";
        portal.change(0);
        EXPECT_EQ(heard.last(3), ColorScheme::unsaid);
        portal.change(7);
        EXPECT_EQ(heard.last(4), ColorScheme::unsaid) << "what a later portal may say";
        EXPECT_EQ(portal.requests(), 1);
    });
}

INSTANTIATE_TEST_SUITE_P(Ages, ColorSchemeTest,
                         testing::Values(StandInPortal::Age::old, StandInPortal::Age::current),
                         [](const auto& age) {
                             return age.param == StandInPortal::Age::old ? "Old" : "Current";
                         });

class ColorSchemeBus : public ColorSchemeTest {};

TEST_F(ColorSchemeBus, EndsAtOnceWhateverIsUnderWay) {
    test::inChild([] {
        const SessionBus bus;
        const StandInPortal portal(bus, StandInPortal::Age::current, 1);
        for (int times = 0; times < 200; ++times)
            const ColorSchemeWatch watch([](ColorScheme) {});
    });
}

TEST_F(ColorSchemeBus, APortalThatComesLaterIsHeard) {
    test::inChild([] {
        const SessionBus bus;
        Heard heard;
        const ColorSchemeWatch watch([&](ColorScheme scheme) { heard.add(scheme); });
        StandInPortal portal(bus, StandInPortal::Age::current, 0);
        // Repeats until the watch is listening; it may have asked before the portal existed.
        EXPECT_TRUE(test::waitUntil([&] {
            portal.change(1);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));  // a flood would delay the answer
            const std::vector<ColorScheme> schemes = heard.values();
            return !schemes.empty() && schemes.back() == ColorScheme::dark;
        }));
    });
}

TEST_F(ColorSchemeBus, WithoutABusNothingWaits) {
    test::inChild([] {
        setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
        const ColorSchemeWatch watch([](ColorScheme) { ADD_FAILURE(); });
    });
}

/// Something listens at the bus's address but never answers.
TEST_F(ColorSchemeBus, ASilentBusHoldsNobodyUp) {
    test::inChild([] {
        const test::TempTree tree;
        const std::string path = tree.path("bus");
        const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        ASSERT_LT(path.size(), sizeof(address.sun_path));
        std::memcpy(address.sun_path, path.c_str(), path.size());
        ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        ASSERT_EQ(listen(listener, 5), 0);
        setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
        {
            const ColorSchemeWatch watch([](ColorScheme) {});
            const int client = accept(listener, nullptr, nullptr);  // it is now waiting for an answer
            EXPECT_GE(client, 0);
        }
        close(listener);
    });
}

}  // namespace
}  // namespace ulvak::platform

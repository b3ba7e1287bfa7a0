#include "platform/desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "support/isolation.h"
#include "support/linux/session_service.h"
#include "support/linux/stand_in_portal.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::SizeIs;

constexpr const char* busName = "org.freedesktop.FileManager1";
constexpr const char* objectPath = "/org/freedesktop/FileManager1";
constexpr const char* interfaces =
    "<node><interface name='org.freedesktop.FileManager1'><method name='ShowItems'>"
    "<arg type='as' direction='in'/><arg type='s' direction='in'/></method></interface></node>";

/// A file manager on the session bus that records what it is asked to show.
class NotingFileBrowser {
public:
    explicit NotingFileBrowser(std::string address)
        : service_(std::move(address), {.name = busName, .path = objectPath, .interfaces = interfaces},
                   [this](const std::string&, GVariant* parameters) { return note(parameters); }) {}

    /// The URIs of each request so far.
    [[nodiscard]] std::vector<std::vector<std::string>> requests() const {
        const std::scoped_lock lock(mutex_);
        return requests_;
    }

private:
    GVariant* note(GVariant* parameters) {
        std::vector<std::string> addresses;
        GVariantIter* items = nullptr;
        const char* startUp = nullptr;
        g_variant_get(parameters, "(as&s)", &items, &startUp);
        const char* address = nullptr;
        while (g_variant_iter_next(items, "&s", &address))
            addresses.emplace_back(address);
        g_variant_iter_free(items);
        const std::scoped_lock lock(mutex_);
        requests_.push_back(std::move(addresses));
        return nullptr;
    }

    mutable std::mutex mutex_;
    std::vector<std::vector<std::string>> requests_;  ///< guarded by `mutex_`
    test::SessionService service_;                    ///< last: it uses the others, from its own thread
};

/// Runs `body` in a process whose session bus has only this file manager on it.
void withFileBrowser(const std::function<void(const NotingFileBrowser&)>& body) {
    test::inChild([&] {
        const test::SessionBus bus;
        const NotingFileBrowser browser(bus.address());
        body(browser);
    });
}

class FileBrowser : public testing::Test {
protected:
    void SetUp() override {
#ifdef ULVAK_THREAD_SANITIZER
        GTEST_SKIP() << "the bus's library hands things from thread to thread unseen";
#endif
    }
};

TEST_F(FileBrowser, ShowsAllItemsInOneRequest) {
    withFileBrowser([](const NotingFileBrowser& browser) {
        const std::vector<std::string> paths = {"/ev/a b", "/ev/Çöp#1?", "/ev/\xff%41"};
        // On a stalled machine the answer comes too late, and the user tries again.
        std::size_t asked = 0;
        for (; asked < 5 && browser.requests().empty(); ++asked)
            EXPECT_TRUE(revealInFileBrowser(paths));
        EXPECT_THAT(browser.requests(),
                    AllOf(Not(IsEmpty()), SizeIs(Le(asked)),
                          Each(ElementsAre("file:///ev/a%20b", "file:///ev/%C3%87%C3%B6p%231%3F",
                                           "file:///ev/%FF%2541"))));
    });
}

TEST_F(FileBrowser, IsNotAskedToShowNothing) {
    withFileBrowser([](const NotingFileBrowser& browser) {
        EXPECT_TRUE(revealInFileBrowser({}));
        EXPECT_THAT(browser.requests(), IsEmpty());
    });
}

TEST_F(FileBrowser, SaysThatNothingOpensWhereThereIsNone) {
    test::inChild([] {
        const test::TempTree tree;
        // Where programs that open folders are looked up.
        for (const char* place :
             {"HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            setenv(place, tree.path().c_str(), 1);
        const test::SessionBus bus;
        const std::vector<std::string> paths = {tree.path("önbellek")};
        EXPECT_FALSE(revealInFileBrowser(paths));
    });
}

TEST_F(FileBrowser, HasNoPageOfPrivacySettingsHere) {
    EXPECT_FALSE(hasPrivacySettings());
}

}  // namespace
}  // namespace ulvak::platform

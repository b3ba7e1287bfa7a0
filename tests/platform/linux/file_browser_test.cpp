#include "platform/file_browser.h"

#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/isolation.h"

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

/// A file browser on the session's bus, which notes what it is asked to show. Answers in a thread of its own.
class NotingFileBrowser {
public:
    explicit NotingFileBrowser(std::string address)
        : address_(std::move(address)), thread_([this] { serve(); }) {
        isThere_.get_future().wait();
    }
    ~NotingFileBrowser() {
        g_main_loop_quit(loop_);
        thread_.join();
    }
    NotingFileBrowser(const NotingFileBrowser&) = delete;
    NotingFileBrowser& operator=(const NotingFileBrowser&) = delete;

    /// The addresses of each request until now.
    [[nodiscard]] std::vector<std::vector<std::string>> requests() const {
        const std::scoped_lock lock(mutex_);
        return requests_;
    }

private:
    void serve() {
        GMainContext* context = g_main_context_new();
        g_main_context_push_thread_default(context);
        loop_ = g_main_loop_new(context, FALSE);
        GDBusConnection* bus = g_dbus_connection_new_for_address_sync(
            address_.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(interfaces, nullptr);
        GDBusInterfaceVTable calls{};
        calls.method_call = &NotingFileBrowser::note;
        g_dbus_connection_register_object(bus, objectPath, node->interfaces[0], &calls, this, nullptr,
                                          nullptr);
        g_variant_unref(g_dbus_connection_call_sync(
            bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", busName, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        // Said from inside the loop: one that is told to quit before it runs would run for ever.
        GSource* onceRunning = g_idle_source_new();
        g_source_set_callback(onceRunning, &NotingFileBrowser::sayItIsThere, this, nullptr);
        g_source_attach(onceRunning, context);
        g_source_unref(onceRunning);
        g_main_loop_run(loop_);
        g_dbus_node_info_unref(node);
        g_object_unref(bus);
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    }

    static gboolean sayItIsThere(gpointer self) {
        static_cast<NotingFileBrowser*>(self)->isThere_.set_value();
        return G_SOURCE_REMOVE;
    }

    static void note(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                     const char* /*interface*/, const char* /*method*/, GVariant* parameters,
                     GDBusMethodInvocation* invocation, gpointer self) {
        std::vector<std::string> addresses;
        GVariantIter* items = nullptr;
        const char* startUp = nullptr;
        g_variant_get(parameters, "(as&s)", &items, &startUp);
        const char* address = nullptr;
        while (g_variant_iter_next(items, "&s", &address))
            addresses.emplace_back(address);
        g_variant_iter_free(items);
        static_cast<NotingFileBrowser*>(self)->note(std::move(addresses));
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    void note(std::vector<std::string> addresses) {
        const std::scoped_lock lock(mutex_);
        requests_.push_back(std::move(addresses));
    }

    std::string address_;
    std::promise<void> isThere_;
    GMainLoop* loop_ = nullptr;  ///< set before `isThere_`
    mutable std::mutex mutex_;
    std::vector<std::vector<std::string>> requests_;  ///< guarded by `mutex_`
    std::thread thread_;
};

/// Runs `body` in a process whose session has a bus and nothing on it but this file browser.
void withFileBrowser(const std::function<void(const NotingFileBrowser&)>& body) {
    test::inChild([&] {
        char* daemon = g_find_program_in_path("dbus-daemon");
        ASSERT_NE(daemon, nullptr) << "the package dbus-daemon is missing";
        g_free(daemon);
        GTestDBus* session = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(session);
        {
            const NotingFileBrowser browser(g_test_dbus_get_bus_address(session));
            body(browser);
        }
        g_test_dbus_down(session);
        g_object_unref(session);
    });
}

class FileBrowser : public testing::Test {
protected:
    void SetUp() override {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the bus's library hands things from thread to thread unseen";
#endif
    }
};

TEST_F(FileBrowser, ShowsAllItemsInOneRequest) {
    withFileBrowser([](const NotingFileBrowser& browser) {
        const std::vector<std::string> paths = {"/ev/a b", "/ev/Çöp#1?", "/ev/\xff%41"};
        // Where the machine stalls, an answer comes too late, and the user asks again.
        std::size_t asked = 0;
        for (; asked < 5 && browser.requests().empty(); ++asked)
            revealInFileBrowser(paths);
        EXPECT_THAT(browser.requests(),
                    AllOf(Not(IsEmpty()), SizeIs(Le(asked)),
                          Each(ElementsAre("file:///ev/a%20b", "file:///ev/%C3%87%C3%B6p%231%3F",
                                           "file:///ev/%FF%2541"))));
    });
}

TEST_F(FileBrowser, IsNotAskedToShowNothing) {
    withFileBrowser([](const NotingFileBrowser& browser) {
        revealInFileBrowser({});
        EXPECT_THAT(browser.requests(), IsEmpty());
    });
}

TEST_F(FileBrowser, HasNoPageOfPrivacySettingsHere) {
    EXPECT_FALSE(hasPrivacySettings());
}

}  // namespace
}  // namespace ulvak::platform

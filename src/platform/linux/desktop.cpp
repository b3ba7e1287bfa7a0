#include "platform/desktop.h"

#include <gio/gio.h>

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/language_model.h"

namespace ulvak::platform {
namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalObject = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* group = "org.freedesktop.appearance";
constexpr const char* key = "color-scheme";

/// Takes ownership of `value`. Older portals wrap the variant in another variant.
ColorScheme schemeIn(GVariant* value) {
    while (g_variant_is_of_type(value, G_VARIANT_TYPE_VARIANT)) {
        GVariant* inner = g_variant_get_variant(value);
        g_variant_unref(value);
        value = inner;
    }
    const guint32 number =
        g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32) ? g_variant_get_uint32(value) : 0;
    g_variant_unref(value);
    return number == 1 ? ColorScheme::dark : number == 2 ? ColorScheme::light : ColorScheme::unsaid;
}

constexpr int maxWait = 5'000;  // milliseconds

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};

std::string uriOf(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> uri(g_filename_to_uri(path.c_str(), nullptr, nullptr),
                                                     &g_free);
    return uri ? uri.get() : "";
}

/// The file browsers' common D-Bus interface. Returns false if none answers.
bool showItems(std::span<const std::string> paths) {
    const std::unique_ptr<GDBusConnection, Unref> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus)
        return false;
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE("as"));
    for (const std::string& path : paths)
        g_variant_builder_add(&uris, "s", uriOf(path).c_str());
    const std::unique_ptr<GVariant, UnrefVariant> reply(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(ass)", &uris, ""), nullptr,
        G_DBUS_CALL_FLAGS_NONE, maxWait, nullptr, nullptr));
    return reply != nullptr;
}

}  // namespace

bool revealInFileBrowser(std::span<const std::string> paths) {
    if (paths.empty() || showItems(paths))
        return true;
    const std::string& first = paths.front();
    return openUrl(uriOf(first.substr(0, std::max<std::size_t>(first.rfind('/'), 1))));
}

bool openUrl(std::string_view url) {
    return g_app_info_launch_default_for_uri(std::string(url).c_str(), nullptr, nullptr) == TRUE;
}

bool hasPrivacySettings() {
    return false;
}

/// The desktop's settings portal on the session bus. Everything except start and end runs on a thread with
/// its own main loop, since the toolkit may not run GLib's. The thread outlives the watch until everything is
/// cancelled; with a bus that never answers, it stays until the program ends. So nobody waits for it, and
/// both sides share ownership of this.
class ColorSchemeWatch::Desktop {
public:
    explicit Desktop(Changed changed) : changed_(std::move(changed)) {}
    ~Desktop() {
        g_object_unref(cancellable_);
        g_main_context_unref(context_);
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    static void start(std::shared_ptr<Desktop> desktop) {
        std::thread([desktop = std::move(desktop)] { desktop->run(); }).detach();
    }

    void end() {
        {
            const std::scoped_lock lock(telling_);
            changed_ = nullptr;
        }
        g_cancellable_cancel(cancellable_);
        g_main_context_wakeup(context_);
    }

private:
    void run() {
        g_main_context_push_thread_default(context_);
        ++pending_;
        g_bus_get(G_BUS_TYPE_SESSION, cancellable_, &Desktop::onBus, this);
        while (pending_ > 0 || !isEnding())
            g_main_context_iteration(context_, TRUE);
        if (bus_ != nullptr) {
            g_dbus_connection_signal_unsubscribe(bus_, subscription_);
            g_object_unref(bus_);
        }
        // Signals in flight hold the connection and the context, and would keep both alive.
        while (g_main_context_iteration(context_, FALSE) == TRUE) {
        }
        g_main_context_pop_thread_default(context_);
    }

    static void onBus(GObject* /*source*/, GAsyncResult* result, gpointer self) {
        auto& desktop = *static_cast<Desktop*>(self);
        --desktop.pending_;
        if (GDBusConnection* bus = g_bus_get_finish(result, nullptr))
            desktop.listen(bus);
    }

    void listen(GDBusConnection* bus) {
        bus_ = bus;
        // Losing the session bus must not end the program in the middle of a removal.
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        subscription_ =
            g_dbus_connection_signal_subscribe(bus, portal, settings, "SettingChanged", portalObject, group,
                                               G_DBUS_SIGNAL_FLAGS_NONE, &Desktop::onSignal, this, nullptr);
        ask("ReadOne", &Desktop::onAnswer);
    }

    void ask(const char* method, GAsyncReadyCallback onReply) {
        ++pending_;
        constexpr int usualWait = -1;
        g_dbus_connection_call(bus_, portal, portalObject, settings, method,
                               g_variant_new("(ss)", group, key), G_VARIANT_TYPE("(v)"),
                               G_DBUS_CALL_FLAGS_NONE, usualWait, cancellable_, onReply, this);
    }

    static void onAnswer(GObject* bus, GAsyncResult* result, gpointer self) {
        auto& desktop = *static_cast<Desktop*>(self);
        // Older portals know only the other method name.
        if (!desktop.take(bus, result) && !desktop.isEnding())
            desktop.ask("Read", &Desktop::onOldAnswer);
    }

    static void onOldAnswer(GObject* bus, GAsyncResult* result, gpointer self) {
        // Dropped by design: a desktop without a portal has no preference to ask for.
        (void)static_cast<Desktop*>(self)->take(bus, result);
    }

    bool take(GObject* bus, GAsyncResult* result) {
        --pending_;
        GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
        if (answer == nullptr)
            return false;
        tell(schemeIn(g_variant_get_child_value(answer, 0)));
        g_variant_unref(answer);
        return true;
    }

    static void onSignal(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                         const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                         gpointer self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)")))
            return;
        const char* changedKey = nullptr;
        g_variant_get_child(parameters, 1, "&s", &changedKey);
        if (g_str_equal(changedKey, key) == TRUE)
            static_cast<Desktop*>(self)->tell(schemeIn(g_variant_get_child_value(parameters, 2)));
    }

    void tell(ColorScheme scheme) {
        const std::scoped_lock lock(telling_);
        if (changed_)
            changed_(scheme);
    }

    [[nodiscard]] bool isEnding() const { return g_cancellable_is_cancelled(cancellable_) == TRUE; }

    std::mutex telling_;
    Changed changed_;  ///< guarded by `telling_`; empty once the watch has ended
    GMainContext* const context_ = g_main_context_new();
    GCancellable* const cancellable_ = g_cancellable_new();

    // Used only on the thread.
    GDBusConnection* bus_ = nullptr;
    guint subscription_ = 0;
    int pending_ = 0;  ///< calls still to return, if only as cancelled
};

ColorSchemeWatch::ColorSchemeWatch(Changed changed)
    : desktop_(std::make_shared<Desktop>(std::move(changed))) {
    Desktop::start(desktop_);
}

ColorSchemeWatch::~ColorSchemeWatch() {
    desktop_->end();
}

const LanguageModel* systemLanguageModel() {
    return nullptr;
}

}  // namespace ulvak::platform

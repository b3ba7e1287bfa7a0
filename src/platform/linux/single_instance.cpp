#include "platform/desktop.h"

#include <gio/gio.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/volume.h"

namespace ulvak::platform {
namespace {

using Role = SingleInstance::Role;

constexpr int maxWait = 4'000;               // milliseconds for one call
constexpr std::chrono::seconds maxStart{6};  // for all calls together
constexpr const char* applicationId = "org.ulvak.ulvak";
constexpr const char* objectPath = "/org/ulvak/ulvak";
constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* launchAction = "launch";
constexpr const char* tokenKey = "activation-token";
constexpr const char* startupKey = "desktop-startup-id";

constexpr const char* interfaces = R"(<node><interface name='org.freedesktop.Application'>
<method name='Activate'><arg type='a{sv}' direction='in'/></method>
<method name='Open'><arg type='as' direction='in'/><arg type='a{sv}' direction='in'/></method>
<method name='ActivateAction'><arg type='s' direction='in'/><arg type='av' direction='in'/>
<arg type='a{sv}' direction='in'/></method></interface></node>)";

struct Unref {
    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(char* text) const { g_free(text); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

/// The address of the session's bus. Does not start one.
std::string busAddress() {
    const char* named = std::getenv("DBUS_SESSION_BUS_ADDRESS");  // NOLINT(concurrency-mt-unsafe)
    if (named != nullptr && *named != '\0')
        return named;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");  // NOLINT(concurrency-mt-unsafe)
    const std::string socket = std::string(folder == nullptr ? "" : folder) + "/bus";
    if (!socket.starts_with('/') || socket == "/bus")
        return {};
    const Reach::Target place = Reach({}, Reach::Others::prompt).follow(socket);
    struct stat info{};
    if (!place.isThere || ::stat(place.path.c_str(), &info) != 0 || !S_ISSOCK(info.st_mode))
        return {};
    const Owned<char> escaped(g_dbus_address_escape_value(place.path.c_str()));
    return "unix:path=" + std::string(escaped.get());
}

/// The bus name for a place; the same place always gives the same name.
std::string busName(const std::string& place) {
    const Owned<char> digest(g_compute_checksum_for_string(G_CHECKSUM_SHA256, place.c_str(), -1));
    return std::string(applicationId) + ".at_" + std::string(digest.get()).substr(0, 16);
}

std::string stringIn(GVariant* platformData, const char* key) {
    const char* text = nullptr;
    return g_variant_lookup(platformData, key, "&s", &text) != FALSE ? std::string(text) : std::string();
}

/// The strings in the action's single parameter, a list of them.
std::vector<std::string> argumentsIn(GVariant* parameters) {
    const Owned<GVariant> values(g_variant_get_child_value(parameters, 1));
    if (g_variant_n_children(values.get()) != 1)
        return {};
    const Owned<GVariant> boxed(g_variant_get_child_value(values.get(), 0));
    const Owned<GVariant> list(g_variant_get_variant(boxed.get()));
    if (g_variant_is_of_type(list.get(), G_VARIANT_TYPE_STRING_ARRAY) == FALSE)
        return {};
    std::vector<std::string> arguments;
    for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
        const Owned<GVariant> text(g_variant_get_child_value(list.get(), i));
        arguments.emplace_back(g_variant_get_string(text.get(), nullptr));
    }
    return arguments;
}

LaunchRequest requestIn(std::string_view method, GVariant* parameters) {
    const Owned<GVariant> platformData(
        g_variant_get_child_value(parameters, g_variant_n_children(parameters) - 1));
    LaunchRequest request{.activationToken = stringIn(platformData.get(), tokenKey)};
    if (request.activationToken.empty())
        request.activationToken = stringIn(platformData.get(), startupKey);
    if (method == "ActivateAction") {
        const Owned<GVariant> action(g_variant_get_child_value(parameters, 0));
        if (std::string_view(g_variant_get_string(action.get(), nullptr)) == launchAction)
            request.arguments = argumentsIn(parameters);
    }
    return request;
}

/// The inverse of `requestIn`: the parameters of the matching method.
GVariant* parametersOf(const LaunchRequest& request) {
    GVariantBuilder platformData;
    g_variant_builder_init(&platformData, G_VARIANT_TYPE_VARDICT);
    for (const char* key : {tokenKey, startupKey}) {
        if (!request.activationToken.empty())
            g_variant_builder_add(&platformData, "{sv}", key,
                                  g_variant_new_string(request.activationToken.c_str()));
    }
    if (request.arguments.empty())
        return g_variant_new("(a{sv})", &platformData);
    GVariantBuilder arguments;
    g_variant_builder_init(&arguments, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& argument : request.arguments) {
        if (g_utf8_validate(argument.c_str(), -1, nullptr) != FALSE)
            g_variant_builder_add(&arguments, "s", argument.c_str());
    }
    GVariantBuilder values;
    g_variant_builder_init(&values, G_VARIANT_TYPE("av"));
    g_variant_builder_add(&values, "v", g_variant_builder_end(&arguments));
    return g_variant_new("(sava{sv})", launchAction, &values, &platformData);
}

std::string validToken(const char* name) {
    const char* token = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): before there are threads
    return token != nullptr && g_utf8_validate(token, -1, nullptr) != FALSE ? token : "";
}

}  // namespace

std::string activationToken() {
    const std::string token = validToken("XDG_ACTIVATION_TOKEN");
    return token.empty() ? validToken("DESKTOP_STARTUP_ID") : token;
}

/// Its own connection to the bus, served by its own thread, independent of the toolkit's.
class SingleInstance::Desktop {
public:
    Desktop(std::string address, std::string name, const LaunchRequest& request)
        : address_(std::move(address)), name_(std::move(name)), request_(request) {
        auto role = role_.get_future();
        thread_ = std::thread([this] { run(); });
        if (role.wait_for(maxStart) == std::future_status::ready)
            foundRole = role.get();
        else
            g_cancellable_cancel(stop_.get());  // a bus that does not answer counts as none
    }
    ~Desktop() {
        g_cancellable_cancel(stop_.get());
        g_main_context_invoke(context_.get(), &Desktop::quit, loop_.get());
        thread_.join();
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    void listen(Received received) {
        std::vector<GDBusMethodInvocation*> early;
        {
            const std::scoped_lock lock(mutex_);
            received_ = std::move(received);
            early.swap(early_);
        }
        for (GDBusMethodInvocation* invocation : early)
            hand(invocation);
    }

    Role foundRole = Role::first;

private:
    void run() {
        g_main_context_push_thread_default(context_.get());
        if (const Owned<GDBusConnection> bus = connect(); bus) {
            const Role role = registerAt(bus.get()) ? become(bus.get()) : Role::first;
            role_.set_value(role);
            if (role == Role::first)
                g_main_loop_run(loop_.get());
            g_dbus_connection_close_sync(bus.get(), nullptr, nullptr);
        } else {
            role_.set_value(Role::first);
        }
        g_main_context_pop_thread_default(context_.get());
    }

    Owned<GDBusConnection> connect() {
        return Owned<GDBusConnection>(g_dbus_connection_new_for_address_sync(
            address_.c_str(),
            // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): the type of both together
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, stop_.get(), nullptr));
    }

    /// Before requesting the name: whoever sees the name may call at once.
    bool registerAt(GDBusConnection* bus) {
        static const GDBusInterfaceVTable calls{
            .method_call = &Desktop::take, .get_property = nullptr, .set_property = nullptr, .padding = {}};
        const Owned<GDBusNodeInfo> node(g_dbus_node_info_new_for_xml(interfaces, nullptr));
        return g_dbus_connection_register_object(bus, objectPath, node->interfaces[0], &calls, this, nullptr,
                                                 nullptr) != 0;
    }

    Role become(GDBusConnection* bus) {
        constexpr int maxAttempts = 3;
        for (int i = 0; i < maxAttempts; ++i) {
            if (ownsName(bus))
                return Role::first;
            if (const auto role = handOver(bus))
                return *role;
            // The owner exited in between.
        }
        return Role::first;
    }

    bool ownsName(GDBusConnection* bus) {
        constexpr guint doNotQueue = 4;
        constexpr guint isInQueue = 2;
        constexpr guint isAnothers = 3;
        const Owned<GVariant> reply(g_dbus_connection_call_sync(
            bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", name_.c_str(), doNotQueue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE,
            maxWait, stop_.get(), nullptr));
        guint answer = 0;
        if (reply)
            g_variant_get(reply.get(), "(u)", &answer);
        return answer != isInQueue && answer != isAnothers;
    }

    /// nullopt if the name no longer has an owner.
    std::optional<Role> handOver(GDBusConnection* bus) {
        GError* failure = nullptr;
        const Owned<GVariant> reply(g_dbus_connection_call_sync(
            bus, name_.c_str(), objectPath, interfaceName,
            request_.arguments.empty() ? "Activate" : "ActivateAction", parametersOf(request_), nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, maxWait, stop_.get(), &failure));
        if (reply)
            return Role::handedOver;
        const Owned<GError> error(failure);
        const bool isGone = g_error_matches(failure, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
                            g_error_matches(failure, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE ||
                            g_error_matches(failure, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE;
        return isGone ? std::nullopt : std::optional(Role::silent);
    }

    static void take(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                     const char* /*interface*/, const char* /*method*/, GVariant* /*parameters*/,
                     GDBusMethodInvocation* invocation, gpointer self) {
        static_cast<Desktop*>(self)->hand(invocation);
    }

    void hand(GDBusMethodInvocation* invocation) {
        Received received;
        {
            const std::scoped_lock lock(mutex_);
            received = received_;
            if (!received)
                early_.push_back(invocation);
        }
        if (!received)
            return;
        LaunchRequest request = requestIn(g_dbus_method_invocation_get_method_name(invocation),
                                          g_dbus_method_invocation_get_parameters(invocation));
        received(std::move(request),
                 std::shared_ptr<GDBusMethodInvocation>(invocation, [](GDBusMethodInvocation* obeyed) {
                     g_dbus_method_invocation_return_value(obeyed, nullptr);
                 }));
    }

    static gboolean quit(gpointer loop) {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
    }

    const std::string address_;
    const std::string name_;
    const LaunchRequest request_;
    const Owned<GCancellable> stop_{g_cancellable_new()};
    const Owned<GMainContext> context_{g_main_context_new()};
    const Owned<GMainLoop> loop_{g_main_loop_new(context_.get(), FALSE)};
    std::promise<Role> role_;
    std::mutex mutex_;
    Received received_;                          ///< guarded by `mutex_`
    std::vector<GDBusMethodInvocation*> early_;  ///< received before `listen`; guarded by `mutex_`
    std::thread thread_;
};

SingleInstance::SingleInstance(const std::string& place, const LaunchRequest& request) {
    std::string address = busAddress();
    if (!address.empty())
        desktop_ = std::make_unique<Desktop>(std::move(address), busName(place), request);
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::role() const {
    return desktop_ ? desktop_->foundRole : Role::first;
}

void SingleInstance::listen(Received received) {
    if (desktop_)
        desktop_->listen(std::move(received));
}

}  // namespace ulvak::platform

#include "support/linux/session_service.h"

#include <utility>

namespace ulvak::test {

SessionService::SessionService(std::string address, Object place, Answer answer)
    : address_(std::move(address)), place_(place), answer_(std::move(answer)), thread_([this] { serve(); }) {
    isThere_.get_future().wait();
}

SessionService::~SessionService() {
    g_main_loop_quit(loop_);
    thread_.join();
}

void SessionService::serve() {
    GMainContext* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    loop_ = g_main_loop_new(context, FALSE);
    bus_ = g_dbus_connection_new_for_address_sync(
        address_.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(place_.interfaces, nullptr);
    GDBusInterfaceVTable calls{};
    calls.method_call = &SessionService::call;
    g_dbus_connection_register_object(bus_, place_.path, node->interfaces[0], &calls, this, nullptr, nullptr);
    g_variant_unref(g_dbus_connection_call_sync(
        bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", place_.name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    // Signalled from inside the loop: `quit` before the loop runs would be lost and it would run forever.
    GSource* onceRunning = g_idle_source_new();
    g_source_set_callback(onceRunning, &SessionService::sayItIsThere, this, nullptr);
    g_source_attach(onceRunning, context);
    g_source_unref(onceRunning);
    g_main_loop_run(loop_);
    g_dbus_node_info_unref(node);
    g_object_unref(bus_);
    g_main_loop_unref(loop_);
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
}

gboolean SessionService::sayItIsThere(gpointer self) {
    static_cast<SessionService*>(self)->isThere_.set_value();
    return G_SOURCE_REMOVE;
}

void SessionService::call(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                          const char* /*interface*/, const char* method, GVariant* parameters,
                          GDBusMethodInvocation* invocation, gpointer self) {
    g_dbus_method_invocation_return_value(invocation,
                                          static_cast<SessionService*>(self)->answer_(method, parameters));
}

void SessionService::emitSignal(const char* interface, const char* signal, GVariant* parameters) {
    g_dbus_connection_emit_signal(bus_, nullptr, place_.path, interface, signal, parameters, nullptr);
}

}  // namespace ulvak::test

#include "platform/file_browser.h"

#include <gio/gio.h>

#include <algorithm>
#include <cstddef>
#include <memory>

namespace ulvak::platform {
namespace {

constexpr int longestWait = 5'000;  // milliseconds

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

/// The file browsers' common interface. False when none answers.
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
        G_DBUS_CALL_FLAGS_NONE, longestWait, nullptr, nullptr));
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

}  // namespace ulvak::platform

#include "support/linux/stand_in_portal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/linux/session_service.h"

namespace ulvak::test {
namespace {

constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* group = "org.freedesktop.appearance";

/// Current portals still have the old method too.
std::string interfacesOf(StandInPortal::Age age) {
    const auto method = [](const char* name) {
        return std::string("<method name='") + name +
               "'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
               "<arg type='v' direction='out'/></method>";
    };
    return std::string("<node><interface name='") + settings + "'>" + method("Read") +
           (age == StandInPortal::Age::old ? "" : method("ReadOne")) +
           "<signal name='SettingChanged'><arg type='s'/><arg type='s'/><arg type='v'/></signal>"
           "</interface></node>";
}

}  // namespace

struct SessionBus::Daemon {
    GTestDBus* bus = g_test_dbus_new(G_TEST_DBUS_NONE);
};

SessionBus::SessionBus() : daemon_(std::make_unique<Daemon>()) {
    char* program = g_find_program_in_path("dbus-daemon");
    EXPECT_NE(program, nullptr) << "the package dbus-daemon is missing";
    if (program == nullptr)
        std::abort();
    g_free(program);
    g_test_dbus_up(daemon_->bus);
}

SessionBus::~SessionBus() {
    g_test_dbus_down(daemon_->bus);
    g_object_unref(daemon_->bus);
}

const char* SessionBus::address() const {
    return g_test_dbus_get_bus_address(daemon_->bus);
}

struct StandInPortal::Service {
    std::string interfaces;
    SessionService service;
};

StandInPortal::StandInPortal(const SessionBus& bus, Age age, std::uint32_t wish) : wish_(wish) {
    const std::string interfaces = interfacesOf(age);
    const SessionService::Object place{.name = "org.freedesktop.portal.Desktop",
                                       .path = "/org/freedesktop/portal/desktop",
                                       .interfaces = interfaces.c_str()};
    const auto answer = [this](const std::string& method, GVariant*) {
        ++requests_;
        GVariant* value = g_variant_new_uint32(wish_);
        return method == "Read" ? g_variant_new("(v)", g_variant_new_variant(value))
                                : g_variant_new("(v)", value);
    };
    // NOLINTNEXTLINE(modernize-make-unique): the aggregate is built in place
    service_.reset(new Service{.interfaces = interfaces, .service{bus.address(), place, answer}});
}

StandInPortal::~StandInPortal() = default;

void StandInPortal::change(std::uint32_t wish) {
    wish_ = wish;
    service_->service.emitSignal(settings, "SettingChanged",
                                 g_variant_new("(ssv)", group, "color-scheme", g_variant_new_uint32(wish)));
}

void StandInPortal::changeContrast(std::uint32_t to) {
    service_->service.emitSignal(settings, "SettingChanged",
                                 g_variant_new("(ssv)", group, "contrast", g_variant_new_uint32(to)));
}

}  // namespace ulvak::test

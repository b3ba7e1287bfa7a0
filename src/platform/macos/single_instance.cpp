#include "platform/single_instance.h"

// The bundle says that it is started once (LSMultipleInstancesProhibited): the system then brings the window
// to the front by itself. Who starts the program in it by hand gets a window of their own.

namespace ulvak::platform {

class SingleInstance::Desktop {};

std::string activationToken() {
    return {};
}

SingleInstance::SingleInstance(const std::string& /*place*/, const LaunchRequest& /*request*/) {}
SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::role() const {
    return Role::first;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): another system keeps it
void SingleInstance::listen(Received /*received*/) {}

}  // namespace ulvak::platform

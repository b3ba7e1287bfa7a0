#include "platform/files.h"
#include "platform/program.h"

namespace ulvak::platform {

std::optional<std::string> ownProgram() {
    return resolvedPath("/proc/self/exe");
}

}  // namespace ulvak::platform

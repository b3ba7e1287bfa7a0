#include <mach-o/dyld.h>

#include <cstdint>
#include <cstring>

#include "platform/files.h"
#include "platform/program.h"

namespace ulvak::platform {

std::optional<std::string> ownProgram() {
    std::uint32_t size = 0;
    (void)::_NSGetExecutablePath(nullptr, &size);  // fails, and says how much room it takes
    std::string path(size, '\0');
    if (::_NSGetExecutablePath(path.data(), &size) != 0)
        return std::nullopt;
    path.resize(std::strlen(path.c_str()));
    return resolvedPath(path);
}

}  // namespace ulvak::platform

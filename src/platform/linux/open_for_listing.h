#pragma once

#include <fcntl.h>

#include <cerrno>

namespace ulvak::platform {

/// Opens a folder to be listed by `open(flags)`, which returns a handle or -1 with `errno` set. O_NOATIME
/// keeps a scan from renewing the access dates that tell when a folder was last used. Only the owner may ask
/// for it; others open without.
template <typename Open>
int openForListing(Open open) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    const int handle = open(flags | O_NOATIME);
    return handle < 0 && errno == EPERM ? open(flags) : handle;
}

}  // namespace ulvak::platform

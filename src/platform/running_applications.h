#pragma once

#include <string>
#include <vector>

namespace ulvak::platform {

/// The names of this user's running applications as the desktop shows them, in the system's order. Where the
/// desktop does not name a process itself, one that goes by two names, the user's language's and its own, is
/// there with both; and when it is not certain which application a process belongs to, all that it may be are
/// named: better one window too many is closed than a live application's files removed. It only reads.
/// Threads: any; blocks while all processes are looked through.
[[nodiscard]] std::vector<std::string> runningApplications();

}  // namespace ulvak::platform

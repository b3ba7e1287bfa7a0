#pragma once

#include <string_view>

namespace ulvak {

/// Call first, while single-threaded. Ignores SIGPIPE, so that a reader that goes away does not end the
/// program; restores SIGCHLD, so that child exit statuses are available; and reopens closed standard streams,
/// so that no file or pipe we open takes their place.
void prepareStandardStreams();

/// Writes to standard output or standard error. Write errors (a full disk, a closed pipe) are dropped by
/// design: there is nobody left to tell. Thread-safe; blocks while a pipe is full.
void print(std::string_view text);
void printError(std::string_view text);

}  // namespace ulvak

#pragma once

#include <string_view>

namespace ulvak {

/// To be called first, while there is one thread. A reader that goes away must not end the program; how
/// programs that it starts end must be known; and a standard stream that the caller has closed must not be
/// taken by a folder or pipe that it opens.
void prepareStandardStreams();

/// Writes to standard output or standard error. What cannot be written, to a full disk or a closed pipe,
/// is dropped by design: there is nobody left to tell. Safe from any thread; blocks while a pipe is full.
void print(std::string_view text);
void printError(std::string_view text);

}  // namespace ulvak

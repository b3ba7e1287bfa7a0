#pragma once

#include <QLatin1StringView>

#include "support/wait.h"

namespace ulvak::test {

/// Lets `waitUntil` turn the event loop of the thread that waits. Once, in `main`.
void waitInEventLoop();

/// The name of the timer with which that looks.
inline constexpr QLatin1StringView testsTimer("waitUntil");

}  // namespace ulvak::test

#pragma once

#include <QLatin1StringView>

#include "support/wait.h"

namespace ulvak::test {

/// Makes `waitUntil` run the calling thread's event loop. Call once, in `main`.
void waitInEventLoop();

/// The object name of the polling timer.
inline constexpr QLatin1StringView testsTimer("waitUntil");

}  // namespace ulvak::test

#pragma once

#include <gtest/gtest.h>

#include <functional>

namespace ulvak::test {

/// Looks until it holds. Fails after a minute, far longer than anything here takes.
[[nodiscard]] testing::AssertionResult waitUntil(const std::function<bool()>& holds);

/// What passes the time between two looks: a short sleep, or what a program with an event loop has set before
/// its first test (`support/event_loop.h`).
extern void (*betweenLooks)();

}  // namespace ulvak::test

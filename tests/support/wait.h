#pragma once

#include <gtest/gtest.h>

#include <functional>

namespace ulvak::test {

/// Polls until `holds` returns true. Fails after a minute, far longer than anything here takes.
[[nodiscard]] testing::AssertionResult waitUntil(const std::function<bool()>& holds);

/// Called between polls: a short sleep, or what a program with an event loop sets before its first test
/// (`support/event_loop.h`).
extern void (*betweenLooks)();

}  // namespace ulvak::test

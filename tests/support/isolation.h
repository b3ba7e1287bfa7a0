#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <source_location>
#include <string>

/// Test bodies that must not change the test's own process. Each runs in a forked child: what it expects
/// is checked and printed there, and the test fails when anything did or when the child dies. They return
/// whether all is well, for tests that go on from there.
///
///     if (const auto reason = whyNotUnprivileged(tree.path()))
///         GTEST_SKIP() << *reason;
///     asUnprivileged([&] { EXPECT_FALSE(Directory::open(tree.path("locked"))); });
namespace ulvak::test {

using Body = std::function<void()>;

/// With this user's rights.
bool inChild(const Body& body, std::source_location where = std::source_location::current());

/// As a user who owns nothing and may do nothing special; as this user if that is not root.
bool asUnprivileged(const Body& body, std::source_location where = std::source_location::current());

/// With mounts of its own: what the body mounts is seen by nobody else and goes with the child.
bool withPrivateMounts(const Body& body, std::source_location where = std::source_location::current());

/// Why `asUnprivileged` would prove nothing about what lies in `path`; nothing when it works.
[[nodiscard]] std::optional<std::string> whyNotUnprivileged(const std::string& path);

/// Why this user cannot mount; nothing when it works.
[[nodiscard]] std::optional<std::string> whyNoPrivateMounts();

/// An empty file system in memory over `path`; only inside `withPrivateMounts`.
[[nodiscard]] testing::AssertionResult mountMemory(const std::string& path, const std::string& options = "");

/// The folder `source` shown at `path` too; only inside `withPrivateMounts`.
[[nodiscard]] testing::AssertionResult mountAgain(const std::string& source, const std::string& path);

/// The user and group that `asUnprivileged` changes to.
inline constexpr unsigned unprivilegedId = 65534;

}  // namespace ulvak::test

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <source_location>
#include <string>

/// Runs test bodies that must not affect the test's own process. Each runs in a forked child, which checks
/// and prints its expectations; the test fails if any fail or the child dies. Returns whether everything
/// passed.
///
///     if (const auto reason = whyNotUnprivileged(tree.path()))
///         GTEST_SKIP() << *reason;
///     asUnprivileged([&] { EXPECT_FALSE(Directory::open(tree.path("locked"))); });
namespace ulvak::test {

using Body = std::function<void()>;

/// With this user's rights.
bool inChild(const Body& body, std::source_location where = std::source_location::current());

/// As a user without any files or privileges, or as the current user if not root.
bool asUnprivileged(const Body& body, std::source_location where = std::source_location::current());

/// With a private mount namespace: what the body mounts is invisible to others and goes away with the child.
bool withPrivateMounts(const Body& body, std::source_location where = std::source_location::current());

/// Why `asUnprivileged` would prove nothing about the contents of `path`; empty if it works.
[[nodiscard]] std::optional<std::string> whyNotUnprivileged(const std::string& path);

/// Why this user cannot mount; empty if it works.
[[nodiscard]] std::optional<std::string> whyNoPrivateMounts();

/// Mounts an empty in-memory file system at `path`; only inside `withPrivateMounts`.
[[nodiscard]] testing::AssertionResult mountMemory(const std::string& path, const std::string& options = "");

/// Bind-mounts the folder `source` at `path`; only inside `withPrivateMounts`.
[[nodiscard]] testing::AssertionResult mountAgain(const std::string& source, const std::string& path);

/// The user and group id used by `asUnprivileged`.
inline constexpr unsigned unprivilegedId = 65534;

}  // namespace ulvak::test

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ulvak::test {

/// Reports which entries of a folder are opened.
///
///     if (const auto reason = OpenWatch::whyNone())
///         GTEST_SKIP() << *reason;
class OpenWatch {
public:
    /// Why this system has none; empty if it does.
    [[nodiscard]] static std::optional<std::string> whyNone();

    explicit OpenWatch(const std::string& path);
    ~OpenWatch();
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    [[nodiscard]] bool isWatching() const { return watch_ >= 0; }

    /// Names opened since the last call; opening the folder itself is not reported.
    [[nodiscard]] std::vector<std::string> opened() const;

private:
    int handle_ = -1;
    int watch_ = -1;
};

}  // namespace ulvak::test

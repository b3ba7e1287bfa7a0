#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ulvak::test {

/// Sees what is opened of what lies in a folder.
///
///     if (const auto reason = OpenWatch::whyNone())
///         GTEST_SKIP() << *reason;
class OpenWatch {
public:
    /// Why there is none on this system; nothing where there is.
    [[nodiscard]] static std::optional<std::string> whyNone();

    explicit OpenWatch(const std::string& path);
    ~OpenWatch();
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    [[nodiscard]] bool isWatching() const { return watch_ >= 0; }

    /// Names opened since the last call; the folder itself has none.
    [[nodiscard]] std::vector<std::string> opened() const;

private:
    int handle_ = -1;
    int watch_ = -1;
};

}  // namespace ulvak::test

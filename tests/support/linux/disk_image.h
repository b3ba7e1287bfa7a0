#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ulvak::test {

/// Whether a program ran and was content. Its output is dropped.
[[nodiscard]] bool hasRun(const std::vector<std::string>& words);

/// An ext4 file system of that many bytes, in a new file at `image`, mounted at the folder `path`; only
/// inside `withPrivateMounts`. All of its room is there for everybody.
[[nodiscard]] testing::AssertionResult mountImage(const std::string& image, const std::string& path,
                                                  std::int64_t bytes = 8'000'000);

/// Why `mountImage` cannot be had; nothing when it works.
[[nodiscard]] std::optional<std::string> whyNoDiskImages();

}  // namespace ulvak::test

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ulvak::test {

/// Whether a program ran and succeeded. Discards its output.
[[nodiscard]] bool hasRun(const std::vector<std::string>& words);

/// Makes an ext4 file system of this many bytes in a new file `image` and mounts it at the folder `path`;
/// only inside `withPrivateMounts`. No space is reserved for root.
[[nodiscard]] testing::AssertionResult mountImage(const std::string& image, const std::string& path,
                                                  std::int64_t bytes = 8'000'000);

/// Why `mountImage` cannot work; empty if it can.
[[nodiscard]] std::optional<std::string> whyNoDiskImages();

}  // namespace ulvak::test

#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "classify/analyzer.h"
#include "core/paths.h"
#include "scan/dir_node.h"

/// Literal scan trees for tests, and the analyzer's findings in them.
namespace ulvak::test {

inline constexpr std::int64_t megabyte = 1'000'000;
inline constexpr std::int64_t gigabyte = 1'000'000'000;

/// As set by the scanner.
inline constexpr std::int64_t unitMinimum = 50 * megabyte;
inline constexpr std::int64_t defaultMinimum = 300 * megabyte;

/// A user with folders as on macOS, none of which exists on this disk.
inline const UserFolders ayse{.home = "/home/ayse",
                              .temp = "/var/folders/ab/cd/T",
                              .cache = "/var/folders/ab/cd/C",
                              .trash = "/home/ayse/.Trash"};

/// A copyable node, unlike `DirNode`.
struct Node {
    std::string url;  ///< the full path for the root, otherwise a name
    std::int64_t size = 0;
    bool isDirectory = false;
    bool isPackage = false;
    std::int64_t fileCount = 1;
    std::optional<FileTime> modified;
    std::vector<Node> children;

    [[nodiscard]] Node modifiedAt(FileTime date) &&;
    [[nodiscard]] Node withFiles(std::int64_t count) &&;
};

[[nodiscard]] Node fileNode(std::string name, std::int64_t size);
/// As large as its children together.
[[nodiscard]] Node dir(std::string name, std::vector<Node> children);
/// Larger: `size` includes what was too small to keep.
[[nodiscard]] Node dir(std::string name, std::int64_t size, std::vector<Node> children = {});
[[nodiscard]] Node package(std::string name, std::int64_t size, std::vector<Node> children = {});

/// The tree as the walker returns it: children largest first.
[[nodiscard]] DirNode tree(const Node& node);

[[nodiscard]] Analyzer usualAnalyzer();

/// The findings of `usualAnalyzer`.
[[nodiscard]] std::vector<Finding> findings(const std::vector<Node>& roots, const UserFolders& folders = ayse,
                                            std::vector<std::string> innerRoots = {});
[[nodiscard]] std::vector<Finding> findings(const Node& root, const UserFolders& folders = ayse);

/// The findings of an analyzer with these rules.
[[nodiscard]] std::vector<Finding> findingsBy(std::vector<Rule> rules, const std::vector<Node>& roots);

[[nodiscard]] std::vector<std::string> ids(const std::vector<Finding>& findings);
[[nodiscard]] std::vector<std::string> titles(const std::vector<Finding>& findings);

}  // namespace ulvak::test

namespace ulvak {

// How failures print these values.
void PrintTo(const ChildSummary& summary, std::ostream* stream);
void PrintTo(SafetyLevel level, std::ostream* stream);

}  // namespace ulvak

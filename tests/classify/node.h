#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "classify/analyzer.h"
#include "core/paths.h"
#include "scan/dir_node.h"

/// Scanned trees to write down in a test, and what the analyzer finds in them.
namespace ulvak::test {

inline constexpr std::int64_t megabyte = 1'000'000;
inline constexpr std::int64_t gigabyte = 1'000'000'000;

/// What the scanner sets.
inline constexpr std::int64_t unitMinimum = 50 * megabyte;
inline constexpr std::int64_t defaultMinimum = 300 * megabyte;

/// A user of the reference system's kind of folders, none of which is on this disk.
inline const UserFolders ayse{.home = "/home/ayse",
                              .temp = "/var/folders/ab/cd/T",
                              .cache = "/var/folders/ab/cd/C",
                              .trash = "/home/ayse/.Trash"};

/// A node that can be copied, unlike a `DirNode`.
struct Node {
    std::string url;  ///< the whole path at the root, below it a name
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
/// As big as its children together.
[[nodiscard]] Node dir(std::string name, std::vector<Node> children);
/// Bigger: `size` counts also what was too small to keep.
[[nodiscard]] Node dir(std::string name, std::int64_t size, std::vector<Node> children = {});
[[nodiscard]] Node package(std::string name, std::int64_t size, std::vector<Node> children = {});

/// The tree as the walker gives it: children largest first.
[[nodiscard]] DirNode tree(const Node& node);

[[nodiscard]] Analyzer usualAnalyzer();

/// What `usualAnalyzer` finds.
[[nodiscard]] std::vector<Finding> findings(const std::vector<Node>& roots, const UserFolders& folders = ayse,
                                            std::vector<std::string> innerRoots = {});
[[nodiscard]] std::vector<Finding> findings(const Node& root, const UserFolders& folders = ayse);

/// What an analyzer with these rules finds.
[[nodiscard]] std::vector<Finding> findingsBy(std::vector<Rule> rules, const std::vector<Node>& roots);

[[nodiscard]] std::vector<std::string> ids(const std::vector<Finding>& findings);
[[nodiscard]] std::vector<std::string> titles(const std::vector<Finding>& findings);

}  // namespace ulvak::test

namespace ulvak {

// How failures show these values.
void PrintTo(const ChildSummary& summary, std::ostream* stream);
void PrintTo(SafetyLevel level, std::ostream* stream);

}  // namespace ulvak

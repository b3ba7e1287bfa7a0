#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "classify/analyzer.h"
#include "classify/heuristics.h"
#include "node.h"

// Properties of the findings of any tree.

namespace ulvak {
namespace {

using namespace test;

/// Names, including those that rules, guesses and drilling react to.
constexpr std::array names = {"Library",
                              "Caches",
                              "Developer",
                              "Xcode",
                              "DerivedData",
                              "CoreSimulator",
                              "Devices",
                              ".cache",
                              ".npm",
                              ".gradle",
                              "caches",
                              "wrapper",
                              "models",
                              "backups",
                              "eski yedek",
                              "vms",
                              "logs",
                              "tmp",
                              "build",
                              "out",
                              "Cache",
                              "x.app",
                              "y.trace",
                              "Pictures",
                              "a.photoslibrary",
                              "Application Support",
                              "Google",
                              "Chrome",
                              "Default",
                              "a",
                              "b",
                              "c",
                              ".d",
                              ".e",
                              "\xff\n",
                              "[x]*",
                              "{name}",
                              "sdk",
                              "iOS DeviceSupport"};
constexpr std::array traces = {"instruments1.ktrace", "instruments2.ktrace", "xrgpu_1", "xrgpu_2", "xrgpu_3"};
constexpr int levels = 8;

class RandomTree {
public:
    explicit RandomTree(unsigned seed) : engine_(seed) {}

    Node root(const std::string& url) { return folder(url, 60 * gigabyte, levels); }
    std::size_t below(std::size_t count) { return engine_() % count; }

private:
    Node folder(const std::string& name, std::int64_t size, int depth) {
        Node node = dir(name, size);
        node.isPackage = below(12) == 0;
        node.fileCount = static_cast<std::int64_t>(below(1000));
        if (below(3) != 0)
            node.modified = FileTime(std::chrono::seconds(static_cast<std::int64_t>(below(1'000'000))));
        std::set<std::string> used;
        std::int64_t left = size;
        for (std::size_t count = depth > 0 ? below(6) : 0; count > 0; --count) {
            const bool isTrace = depth == levels && below(2) == 0;
            const std::string child = isTrace ? traces[below(traces.size())] : names[below(names.size())];
            const std::int64_t part = partOf(left);
            if (part < 50 * megabyte || !used.insert(child).second)
                continue;
            left -= part;
            node.children.push_back(below(6) == 0 ? fileNode(child, part) : folder(child, part, depth - 1));
        }
        return node;
    }

    /// Often the whole size, and often close to one of the limits.
    std::int64_t partOf(std::int64_t size) {
        constexpr std::array limits = {unitMinimum, defaultMinimum, 100 * megabyte, 2 * gigabyte,
                                       4 * gigabyte};
        if (below(4) == 0)
            return std::min(size, limits[below(limits.size())] + static_cast<std::int64_t>(below(3)) - 1);
        return below(4) == 0 ? size : size / static_cast<std::int64_t>(1 + below(5));
    }

    std::mt19937 engine_;
};

std::string parentOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// Whether a proper ancestor of `path` is among `paths`.
bool liesInOneOf(const std::set<std::string>& paths, const std::string& path) {
    for (std::string above = parentOf(path); !above.empty(); above = parentOf(above)) {
        if (paths.contains(above))
            return true;
    }
    return false;
}

std::set<std::string> allUrls(const std::vector<Finding>& found) {
    std::set<std::string> urls;
    for (const Finding& finding : found) {
        for (const std::string& url : finding.urls)
            EXPECT_TRUE(urls.insert(url).second) << "twice: " << url;
    }
    return urls;
}

void expectOrder(const std::vector<Finding>& found) {
    EXPECT_TRUE(std::ranges::is_sorted(found, std::ranges::greater(), &Finding::size));
}

void expectUniqueIds(const std::vector<Finding>& found) {
    std::set<std::string> seen;
    for (const Finding& finding : found)
        EXPECT_TRUE(seen.insert(finding.id).second) << finding.id;
}

void expectNoneInsideAnother(const std::vector<Finding>& found) {
    const auto urls = allUrls(found);
    for (const std::string& url : urls)
        EXPECT_FALSE(liesInOneOf(urls, url)) << url;
}

void expectGroupOfSiblings(const Finding& finding) {
    if (finding.urls.size() < 2)
        return;
    EXPECT_TRUE(finding.groupKey);
    EXPECT_EQ(finding.children.size(), finding.urls.size());
    EXPECT_TRUE(finding.title.ends_with(" (" + std::to_string(finding.urls.size()) + " öğe)"));
    std::int64_t sum = 0;
    for (const ChildSummary& member : finding.children) {
        EXPECT_GE(member.size, unitMinimum);
        sum += member.size;
    }
    EXPECT_EQ(sum, finding.size);
    for (const std::string& url : finding.urls)
        EXPECT_EQ(parentOf(url), *finding.parentPath);
}

void expectSizeToMeetItsMinimum(const Finding& finding) {
    const bool isDefault = finding.isPersonal || finding.source == VerdictSource::heuristic ||
                           finding.level == SafetyLevel::unknown ||
                           finding.explanation == "Sistemin kullandığı bir klasör. Ulvak buna dokunmaz.";
    EXPECT_GE(finding.size, isDefault ? defaultMinimum : unitMinimum) << finding.id;
}

void expectWellFormed(const Finding& finding) {
    EXPECT_EQ(finding.id, finding.urls.front());
    EXPECT_EQ(currentVerdict(finding), finding.original);
    EXPECT_FALSE(finding.title.empty());
    EXPECT_FALSE(finding.explanation.empty());
    EXPECT_EQ(finding.confidence, std::nullopt);
    EXPECT_LE(finding.siblings.size(), 10U);
    EXPECT_TRUE(std::ranges::is_sorted(finding.siblings, std::ranges::greater(), &ChildSummary::size));
    EXPECT_TRUE(std::ranges::is_sorted(finding.children, std::ranges::greater(), &ChildSummary::size));
    EXPECT_EQ(std::ranges::count(finding.siblings, Paths::lastComponent(finding.id), &ChildSummary::name), 0);
    EXPECT_EQ(finding.parentPath.value_or(parentOf(finding.id)), parentOf(finding.id));
    if (!finding.groupKey) {
        EXPECT_LE(finding.children.size(), 12U);
    }
}

/// Anything large enough for a finding of its own is one, lies in one or contains one, unless it is next to
/// large subfolders that are shown instead of their folder.
void expectNothingBigToBeForgotten(const Node& node, const std::string& path,
                                   const std::set<std::string>& urls) {
    if (urls.contains(path))
        return;
    const auto guess = Heuristics::guess(Paths::lastComponent(path));
    if (guess && guess->splitChildren)
        return;
    if (node.children.empty() && !node.isDirectory) {
        EXPECT_LT(node.size, defaultMinimum) << path;
    }
    for (const Node& child : node.children)
        expectNothingBigToBeForgotten(child, Paths::join(path, child.url), urls);
}

std::int64_t totalSize(const std::vector<Finding>& found) {
    std::int64_t sum = 0;
    for (const Finding& finding : found)
        sum += finding.size;
    return sum;
}

TEST(AnalyzerProperties, HoldForRandomTrees) {
    std::size_t count = 0;
    int groups = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomTree random(seed);
        const std::vector<Node> roots = {random.root(ayse.home), random.root(ayse.temp),
                                         random.root("/Library"), random.root("/Users/Shared"),
                                         random.root("/data")};
        const auto found = findings(roots);
        count += found.size();
        expectOrder(found);
        expectUniqueIds(found);
        expectNoneInsideAnother(found);
        for (const Finding& finding : found) {
            expectGroupOfSiblings(finding);
            expectSizeToMeetItsMinimum(finding);
            expectWellFormed(finding);
            groups += finding.urls.size() > 1 ? 1 : 0;
        }
        for (const Node& root : roots)
            expectNothingBigToBeForgotten(root, root.url, allUrls(found));
        EXPECT_LE(totalSize(found), 5 * 60 * gigabyte) << "counted twice";
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(count, 3'000U) << "trees in which there is something to find";
    EXPECT_GT(groups, 20);
}

/// The path of a random folder in the tree.
std::string someFolder(RandomTree& random, const Node& root) {
    std::string path = root.url;
    const Node* node = &root;
    while (random.below(4) != 0) {
        std::vector<const Node*> folders;
        for (const Node& child : node->children) {
            if (child.isDirectory)
                folders.push_back(&child);
        }
        if (folders.empty())
            break;
        node = folders[random.below(folders.size())];
        path = Paths::join(path, node->url);
    }
    return path;
}

TEST(AnalyzerProperties, NothingThatCanBeCleanedHoldsAnotherRoot) {
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomTree random(seed);
        const Node root = random.root(seed % 2 == 0 ? ayse.home : ayse.temp);
        const std::vector<std::string> innerRoots = {someFolder(random, root) + "/inner",
                                                     someFolder(random, root) + "/T"};
        const auto found = findings({root}, ayse, innerRoots);
        expectUniqueIds(found);
        expectNoneInsideAnother(found);
        for (const Finding& finding : found) {
            const bool isNeverCleaned = std::holds_alternative<CleanAction::None>(finding.action.value);
            for (const std::string& inner : innerRoots)
                EXPECT_TRUE(isNeverCleaned || !Paths::isWithin(inner, finding.id))
                    << finding.id << " holds " << inner;
        }
        for (const Finding& finding : found)
            expectSizeToMeetItsMinimum(finding);
        ASSERT_FALSE(HasFailure());
    }
}

}  // namespace
}  // namespace ulvak

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "classify/folder_evidence.h"
#include "classify/pattern_tree.h"
#include "classify/rule.h"
#include "classify/specificity.h"
#include "core/paths.h"

namespace ulvak {

/// Finds the rule for a scanned node. Patterns are prepared once; matching is then stateless and thread-safe.
/// Reads the disk only for rules with siblings or contents, and only after the name has matched; what cannot
/// be checked counts as missing.
///
/// Ranked rules are also read inside the folders of sandboxed applications, as if those were home folders. Of
/// a ranked rule and another, a path that names the place outright wins over a wide one ("~/.cache/*") and
/// over names.
class RuleMatcher {
public:
    /// `rules` must outlive the matcher.
    explicit RuleMatcher(std::span<const Rule> rules, UserFolders folders);
    RuleMatcher(const RuleMatcher&) = delete;
    RuleMatcher& operator=(const RuleMatcher&) = delete;

    /// The rule that applies to the item at `path` (absolute, bytes); null if none does.
    [[nodiscard]] const Rule* match(std::string_view path, bool isDirectory, ScanContext context) const;
    /// The same, with what is known of the item (`inside`) and of the folder that it lies in (`around`).
    [[nodiscard]] const Rule* match(std::string_view path, bool isDirectory, ScanContext context,
                                    FolderEvidence& inside, FolderEvidence& around) const;

    /// Whether a folder, in which there are at least the `known` ones, holds something that a ranked path
    /// rule says to keep. Reads the disk.
    [[nodiscard]] bool holdsKept(FolderEvidence& inside, std::span<const std::string> known = {}) const;

    /// The id of the application whose sandbox holds `path`; empty if none does.
    [[nodiscard]] std::string_view sandboxOf(std::string_view path) const;

private:
    /// The user folders that a pattern may begin with.
    enum class Area : std::uint8_t { none, home, temp, cache, userCache, userConfig, userData, userState };
    static constexpr std::size_t areaCount = 8;
    using Trees = std::array<PatternTree, areaCount>;
    using Components = PatternTree::Components;

    /// One way to read a path: relative to a folder that patterns may begin with.
    struct Reading {
        Area area = Area::none;
        std::size_t skipped = 0;                ///< components of the path before
        std::span<const std::uint16_t> before;  ///< how specific that folder is, as seen from `frame`
        Area frame = Area::none;                ///< readings with the same one can be compared
    };
    /// In itself, in a sandbox, in the sandbox's folders, and from the root.
    struct Readings {
        std::array<Reading, 4> all;
        std::size_t count = 0;

        void add(const Reading& reading) { all.at(count++) = reading; }
        [[nodiscard]] std::span<const Reading> used() const { return std::span(all).first(count); }
    };
    struct Place {
        Area area = Area::none;
        std::string folded;  ///< its path, in lower case
        Reading reading;
        Specificity before;  ///< of the reading
    };
    struct Question {
        Question(std::string_view itemPath, bool isFolder, ScanContext area);
        Question(const Question&) = delete;
        Question& operator=(const Question&) = delete;

        std::string_view path;
        std::string foldedPath;
        std::vector<std::string_view> parts;
        std::vector<std::string_view> folded;  ///< in `foldedPath`
        bool isDirectory = false;
        ScanContext context = ScanContext::normal;
        FolderEvidence* inside = nullptr;  ///< null if nobody asks for evidence
        FolderEvidence* around = nullptr;  ///< likewise
    };
    /// Rules by the last component of their names: by all of it, or by a character that it begins or ends
    /// with.
    struct NameIndex {
        using Indices = std::vector<std::uint32_t>;

        std::unordered_map<std::string, Indices, PatternTree::Hash, std::equal_to<>> literal;
        std::array<Indices, 256> beginning;
        std::array<Indices, 256> ending;
        Indices others;

        void add(std::string_view folded, std::uint32_t rule);
    };
    /// The rules that may match a name, in their order.
    class Candidates {
    public:
        Candidates(const NameIndex& index, std::string_view folded);
        /// `PatternTree::none` after the last.
        [[nodiscard]] std::uint32_t next();

    private:
        std::array<std::span<const std::uint32_t>, 4> left_;  ///< ascending; no rule is in two
    };
    struct LinearPattern {
        Area area = Area::none;
        std::string glob;  ///< relative to the area's folder
        std::uint32_t rule = 0;
    };
    struct Found {
        std::uint32_t rule = PatternTree::none;
        std::span<const std::uint16_t> before;  ///< of the reading
        std::span<const std::uint16_t> own;     ///< of the pattern
        Area frame = Area::none;

        [[nodiscard]] bool isNothing() const { return rule == PatternTree::none; }
        [[nodiscard]] std::size_t depth() const { return before.size() + own.size(); }
        [[nodiscard]] std::uint16_t at(std::size_t i) const {
            return i < before.size() ? before[i] : own[i - before.size()];
        }
        [[nodiscard]] bool isWide() const { return depth() == 0 || at(depth() - 1) <= wideSpecificity; }
        [[nodiscard]] bool isMoreSpecificThan(const Found& other) const;
    };

    void preparePath(std::uint32_t index, std::string_view pattern);
    void prepareName(std::uint32_t index, const Rule::Name& name);
    void addPlaces();
    [[nodiscard]] std::string_view folder(Area area) const;
    [[nodiscard]] Area areaOf(std::string_view path) const;

    [[nodiscard]] Found inOrder(const Question& question) const;
    [[nodiscard]] std::uint32_t linearly(std::string_view path, Area area) const;
    [[nodiscard]] Found mostSpecific(Question& question, const Found& other) const;
    [[nodiscard]] Found mostSpecificPath(const Question& question) const;
    [[nodiscard]] std::uint32_t named(const Question& question, const NameIndex& index, std::uint32_t end,
                                      bool onlyWarnings = false) const;
    [[nodiscard]] bool mayBeOverruled(const Found& path) const;
    [[nodiscard]] bool matchesName(std::uint32_t index, const Question& question) const;
    [[nodiscard]] bool rankedWins(const Found& ranked, const Found& other) const;
    [[nodiscard]] bool rankedWinsOverPath(const Found& ranked, const Found& other) const;
    [[nodiscard]] bool rankedWinsOverName(const Found& ranked, const Found& other) const;

    [[nodiscard]] const Place* innermost(const Question& question) const;
    [[nodiscard]] Readings readings(const Question& question) const;
    [[nodiscard]] std::optional<Reading> sandboxReading(const Question& question) const;
    static void addAreasWithin(const Question& question, Readings& readings);
    [[nodiscard]] bool isInHome(const Question& question) const;

    std::span<const Rule> rules_;
    UserFolders folders_;
    bool hasOwnCache_ = false;
    bool hasRanked_ = false;
    std::size_t homeDepth_ = 0;               ///< components of the home folder's path
    std::vector<Place> places_;               ///< of two for one folder, the first counts
    std::vector<Specificity> specificities_;  ///< of the rules
    Trees ordered_;
    Trees ranked_;
    std::vector<LinearPattern> linear_;  ///< of the other rules, what no tree accepts
    NameIndex orderedNames_;
    NameIndex rankedNames_;
    std::unordered_map<std::uint32_t, std::vector<std::string>> outside_;  ///< of rules for names, expanded
};

}  // namespace ulvak

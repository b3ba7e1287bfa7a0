#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/verdict.h"
#include "platform/file_time.h"

namespace ulvak {

/// One entry next to or inside a finding.
struct ChildSummary {
    std::string name;  ///< last path component, bytes as on disk
    std::int64_t size = 0;
    bool isDirectory = false;

    friend bool operator==(const ChildSummary&, const ChildSummary&) = default;
};

/// What cleaning a finding does. The order of the alternatives is fixed.
struct CleanAction {
    /// Every item goes to the Trash, or is permanently removed if the user asks for that.
    struct Trash {
        friend bool operator==(const Trash&, const Trash&) = default;
    };
    /// A simulator device is deleted through the developer tools, never through the file system.
    struct DeleteSimulator {
        std::string udid;
        friend bool operator==(const DeleteSimulator&, const DeleteSimulator&) = default;
    };
    /// Cannot be cleaned; the Turkish reason is shown in place of the buttons.
    struct None {
        std::string reason;
        friend bool operator==(const None&, const None&) = default;
    };

    /// The user's Trash itself: it is emptied, never moved or removed, and not with others.
    struct EmptyTrash {
        friend bool operator==(const EmptyTrash&, const EmptyTrash&) = default;
    };

    std::variant<Trash, DeleteSimulator, None, EmptyTrash> value;

    friend bool operator==(const CleanAction&, const CleanAction&) = default;
};

/// One reportable item of a scan: a file or folder, or a group of similar ones merged into one entry. A plain
/// value. Findings with the same id are the same item, whatever their other fields.
struct Finding {
    std::string id;  ///< the item's path (for a group, its first member's); unique within one result list
    std::vector<std::string>
        urls;               ///< full paths: one for a single item, all members of a group in discovery order
    std::int64_t size = 0;  ///< bytes on disk of all `urls` together
    SafetyLevel level = SafetyLevel::unknown;
    std::string title;
    std::string explanation;
    VerdictSource source = VerdictSource::rule;
    std::optional<std::int64_t> confidence;  ///< see `Verdict::confidence`
    CleanAction action;
    std::vector<std::string> quitApps;   ///< applications that must not be running during cleaning
    std::vector<std::string> processes;  ///< names of processes, or patterns for them, that must not either
    std::string command;                 ///< what the user can run to shrink it; never run by the program
    std::optional<FileTime> modified;    ///< latest date found in the item's tree
    std::int64_t fileCount = 0;
    std::vector<ChildSummary>
        children;  ///< at most 12 direct children, or all members of a group; largest first
    std::optional<std::string> parentPath;  ///< absent at a scan root
    std::vector<ChildSummary> siblings;     ///< at most 10 other entries of that folder, largest first
    bool isPersonal = false;                ///< is one of the user's personal files
    Verdict original;  ///< the analysis's own verdict (with the member count for a group); later verdicts do
                       ///< not change it
    std::optional<std::string> groupKey;  ///< key under which similar findings were merged
    /// Bytes of `size` that cleaning does not free, because the files have hard links outside `urls`.
    std::int64_t heldElsewhere = 0;
};

/// The five fields of a finding that form its current verdict.
[[nodiscard]] Verdict currentVerdict(const Finding& finding);
void setCurrentVerdict(Finding& finding, Verdict verdict);

/// The user sets the level by hand: title and explanation stay, a model's confidence is dropped.
void relabel(Finding& finding, SafetyLevel level);

/// Restores the analysis's own verdict.
void resetVerdict(Finding& finding);

/// Whether it is the user's Trash.
[[nodiscard]] bool isTrash(const Finding& finding);

/// Whether it can be moved to the Trash or removed.
[[nodiscard]] bool canBeCleaned(const Finding& finding);

/// What the user is asked to quit so that a process ends, given one of `finding.processes`: the application
/// in `quitApps` whose name tells that the process is part of it, otherwise the process, without "*".
[[nodiscard]] std::string nameToQuit(const Finding& finding, std::string_view process);

/// All that the user is asked to quit before cleaning, each once: applications first, in their order, then
/// processes that are part of none of them.
[[nodiscard]] std::vector<std::string> namesToQuit(const Finding& finding);

/// Bytes of disk space that cleaning frees.
[[nodiscard]] std::int64_t bytesFreed(const Finding& finding);

/// Unknown, or guessed from a name: the findings a model is asked about.
[[nodiscard]] bool isUncertain(const Finding& finding);

/// Appends the number of members, " (3 öğe)", to the title and to the original title that a reset restores.
void appendMemberCount(Finding& finding);

/// What the sidebar has selected.
struct SidebarItem {
    struct Overview {
        friend bool operator==(const Overview&, const Overview&) = default;
    };

    std::variant<Overview, SafetyLevel> value;

    friend bool operator==(const SidebarItem&, const SidebarItem&) = default;
};

}  // namespace ulvak

template <>
struct std::hash<ulvak::ChildSummary> {
    std::size_t operator()(const ulvak::ChildSummary& summary) const noexcept;
};
template <>
struct std::hash<ulvak::CleanAction> {
    std::size_t operator()(const ulvak::CleanAction& action) const noexcept;
};
template <>
struct std::hash<ulvak::SidebarItem> {
    std::size_t operator()(const ulvak::SidebarItem& item) const noexcept;
};

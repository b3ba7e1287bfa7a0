#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "ai/folder_context.h"
#include "support/findings.h"
#include "support/temp_tree.h"

namespace ulvak::test {

/// A home folder and an applications folder private to one test, at a fixed time.
class FactWorld {
public:
    explicit FactWorld(std::vector<TreeEntry> home = {}, std::vector<TreeEntry> applications = {})
        : tree({folder("home", std::move(home)), folder("apps", std::move(applications))}) {
        around.folders = {
            .home = tree.path("home"), .temp = tree.path("temp"), .cache = tree.path("cache"), .trash = ""};
        around.applications = tree.path("apps");
        around.now = Format::Clock::time_point(std::chrono::seconds(1'700'000'000));
    }

    /// The entry at `relative` in the home folder, as a scan would report it, without details.
    [[nodiscard]] Finding finding(std::string_view relative) const {
        return asFound({.id = home(relative), .size = 1'200'000'000, .fileCount = 3456});
    }

    [[nodiscard]] std::string home(std::string_view relative) const {
        return tree.path("home/" + std::string(relative));
    }

    [[nodiscard]] std::string build(const Finding& about, std::string_view note = {},
                                    const std::vector<std::string>& running = {}) const {
        return FolderContext::build(about, note, running, FolderContext::Extent::full, around);
    }

    [[nodiscard]] std::string buildMinimal(const Finding& about, std::string_view note = {}) const {
        return FolderContext::build(about, note, {}, FolderContext::Extent::minimal, around);
    }

    /// `ago` before this world's current time.
    [[nodiscard]] FileTime before(std::chrono::seconds ago) const {
        return std::chrono::time_point_cast<std::chrono::microseconds>(around.now) - ago;
    }

    TempTree tree;
    FolderContext::Circumstances around;
};

[[nodiscard]] inline std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + 1);
    }
}

/// The rest of the only line that starts with `beginning`; "none" or "several" if there is not exactly one.
[[nodiscard]] inline std::string lineAfter(std::string_view text, std::string_view beginning) {
    std::string found = "none";
    for (const std::string& line : linesOf(text)) {
        if (line.starts_with(beginning))
            found = found == "none" ? line.substr(beginning.size()) : "several";
    }
    return found;
}

}  // namespace ulvak::test

#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "core/finding.h"
#include "core/paths.h"

namespace ulvak::test {

/// A finding as a scan reports it. Fills in what a test leaves out: the id from the only path or vice versa,
/// the title from the id's last component, and the current verdict as the original one.
[[nodiscard]] inline Finding asFound(Finding finding) {
    if (finding.urls.empty())
        finding.urls = {finding.id};
    if (finding.id.empty())
        finding.id = finding.urls.front();
    if (finding.title.empty())
        finding.title = Paths::lastComponent(finding.id);
    finding.original = currentVerdict(finding);
    return finding;
}

/// Judged by a rule.
[[nodiscard]] inline Finding finding(const std::string& path, SafetyLevel level,
                                     std::int64_t size = 1'000'000'000) {
    return asFound({.id = path, .size = size, .level = level, .explanation = "Açıklama.", .fileCount = 1234});
}

/// The same, guessed from its name.
[[nodiscard]] inline Finding guessed(Finding finding) {
    finding.source = finding.original.source = VerdictSource::heuristic;
    return finding;
}

[[nodiscard]] inline Finding uncleanable(Finding finding, std::string reason = "Bunu sistem yönetir.") {
    finding.action = {CleanAction::None{std::move(reason)}};
    return finding;
}

[[nodiscard]] inline Finding trash(Finding finding) {
    finding.action = {CleanAction::EmptyTrash{}};
    return finding;
}

[[nodiscard]] inline Finding simulator(Finding finding) {
    finding.action = {CleanAction::DeleteSimulator{.udid = "0000"}};
    return finding;
}

}  // namespace ulvak::test

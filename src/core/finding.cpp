#include "core/finding.h"

#include <algorithm>

#include "core/hash.h"

namespace ulvak {

Verdict currentVerdict(const Finding& finding) {
    return {.level = finding.level,
            .title = finding.title,
            .explanation = finding.explanation,
            .source = finding.source,
            .confidence = finding.confidence};
}

void setCurrentVerdict(Finding& finding, Verdict verdict) {
    finding.level = verdict.level;
    finding.title = std::move(verdict.title);
    finding.explanation = std::move(verdict.explanation);
    finding.source = verdict.source;
    finding.confidence = verdict.confidence;
}

void relabel(Finding& finding, SafetyLevel level) {
    finding.level = level;
    finding.source = VerdictSource::user;
    finding.confidence.reset();
}

void resetVerdict(Finding& finding) {
    setCurrentVerdict(finding, finding.original);
}

bool isTrash(const Finding& finding) {
    return std::holds_alternative<CleanAction::EmptyTrash>(finding.action.value);
}

bool canBeCleaned(const Finding& finding) {
    return !std::holds_alternative<CleanAction::None>(finding.action.value) && !isTrash(finding);
}

std::int64_t bytesFreed(const Finding& finding) {
    return std::max<std::int64_t>(finding.size - finding.heldElsewhere, 0);
}

bool isUncertain(const Finding& finding) {
    return finding.level == SafetyLevel::unknown || finding.source == VerdictSource::heuristic;
}

void appendMemberCount(Finding& finding) {
    finding.title += " (" + std::to_string(finding.urls.size()) + " öğe)";
    finding.original.title = finding.title;
}

}  // namespace ulvak

std::size_t std::hash<ulvak::ChildSummary>::operator()(const ulvak::ChildSummary& summary) const noexcept {
    std::size_t seed = 0;
    ulvak::hashCombine(seed, summary.name);
    ulvak::hashCombine(seed, summary.size);
    ulvak::hashCombine(seed, summary.isDirectory);
    return seed;
}

std::size_t std::hash<ulvak::CleanAction>::operator()(const ulvak::CleanAction& action) const noexcept {
    std::size_t seed = 0;
    ulvak::hashCombine(seed, action.value.index());
    if (const auto* simulator = std::get_if<ulvak::CleanAction::DeleteSimulator>(&action.value))
        ulvak::hashCombine(seed, simulator->udid);
    if (const auto* none = std::get_if<ulvak::CleanAction::None>(&action.value))
        ulvak::hashCombine(seed, none->reason);
    return seed;
}

std::size_t std::hash<ulvak::SidebarItem>::operator()(const ulvak::SidebarItem& item) const noexcept {
    std::size_t seed = 0;
    ulvak::hashCombine(seed, item.value.index());
    if (const auto* level = std::get_if<ulvak::SafetyLevel>(&item.value))
        ulvak::hashCombine(seed, ulvak::info(*level).rawValue);
    return seed;
}

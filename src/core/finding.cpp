#include "core/finding.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/hash.h"
#include "core/text.h"

namespace ulvak {
namespace {

/// Whether the names alone tell that a process is part of an application: "code" of "Visual Studio Code",
/// "firefox-esr" of "Firefox", "studio.sh" of "Android Studio".
bool isPartOf(std::string_view process, std::string_view app) {
    constexpr std::size_t tellingLength = 3;
    const std::string appKey = nameKey(app);
    const std::string key = nameKey(process);
    if (appKey.size() < tellingLength || key.size() < tellingLength)
        return key == appKey;
    if (appKey.contains(key) || key.contains(appKey))
        return true;
    const auto end = std::ranges::find_if_not(process, isWordByte);
    const std::string first = nameKey({process.begin(), end});
    return first.size() > tellingLength && appKey.contains(first);
}

/// A pattern as a name: "qemu-system" for "qemu-system-*".
std::string withoutStars(std::string_view pattern) {
    std::string name(pattern);
    if (std::erase(name, '*') > 0) {
        while (!name.empty() && !isWordByte(name.back()))
            name.pop_back();
    }
    return name;
}

}  // namespace

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

std::string nameToQuit(const Finding& finding, std::string_view process) {
    std::string name = withoutStars(process);
    const auto app =
        std::ranges::find_if(finding.quitApps, [&](const std::string& each) { return isPartOf(name, each); });
    return app != finding.quitApps.end() ? *app : name;
}

std::vector<std::string> namesToQuit(const Finding& finding) {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        const auto isSame = [&](const std::string& other) { return lowerCased(other) == lowerCased(name); };
        if (!name.empty() && std::ranges::none_of(names, isSame))
            names.push_back(name);
    };
    for (const std::string& app : finding.quitApps)
        add(app);
    for (const std::string& process : finding.processes)
        add(nameToQuit(finding, process));
    return names;
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

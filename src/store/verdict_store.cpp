#include "store/verdict_store.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "platform/user_folders.h"

namespace ulvak {
namespace {

/// A rule knew the folder for certain. Among personal files rules are about places, not about what is there.
bool isSettledByRule(const Finding& finding) {
    return finding.original.source == VerdictSource::rule && finding.original.level != SafetyLevel::unknown &&
           !finding.isPersonal;
}

/// Whether an answer about a folder of the stored size can still hold.
bool hasSimilarSize(std::int64_t size, std::int64_t stored) {
    const double ratio = static_cast<double>(size) / static_cast<double>(std::max<std::int64_t>(stored, 1));
    return ratio > 0.5 && ratio < 2.0;
}

bool holdsFor(const VerdictEntry& entry, const Finding& finding) {
    switch (entry.verdict.source) {
        case VerdictSource::user:
            return true;
        case VerdictSource::ai:
            return !isSettledByRule(finding) && hasSimilarSize(finding.size, entry.size);
        case VerdictSource::rule:
        case VerdictSource::heuristic:
            return false;  // worked out anew by every scan
    }
    return false;
}

/// The first is never written over: what comes after it may be worth less.
void keepAside(const std::string& path, const std::string& text) {
    const std::string name = std::string(Paths::lastComponent(path)) + ".old";
    const bool isTaken = platform::existsIn(std::string(Paths::parent(path)), name);
    // Dropped by design: where it cannot be kept, the store is as empty.
    (void)platform::replaceFile(path + (isTaken ? ".old.1" : ".old"), text);
}

}  // namespace

VerdictStore::VerdictStore(std::string path, Clock now, Writer write)
    : path_(std::move(path)), now_(std::move(now)), write_(std::move(write)) {
    // Dropped by design, here and below: no failure of the store reaches the user.
    (void)platform::makeFolders(std::string(Paths::parent(path_)));
    const auto text = platform::readFile(path_, longestVerdictFile);
    if (!text)
        return;
    if (auto entries = decodeEntries(*text))
        entries_ = std::move(*entries);
    else
        keepAside(path_, *text);
}

std::string VerdictStore::defaultPath(const UserFolders& folders) {
    return Paths::join(Paths::join(platform::applicationSupportDirectory(folders.home), "Ulvak"),
                       "verdicts.json");
}

void VerdictStore::apply(Finding& finding) const {
    const auto found = entries_.find(finding.id);
    if (found != entries_.end() && holdsFor(found->second, finding))
        setCurrentVerdict(finding, found->second.verdict);
}

void VerdictStore::save(const Verdict& verdict, const Finding& finding) {
    entries_.insert_or_assign(
        finding.id, VerdictEntry{.verdict = verdict, .size = finding.size, .date = StoredDate::from(now_())});
    persist();
    notify();
}

void VerdictStore::remove(std::string_view id) {
    const auto found = entries_.find(id);
    const bool isThere = found != entries_.end();
    if (isThere)
        entries_.erase(found);
    persist();
    if (isThere)
        notify();
}

FileTime VerdictStore::systemTime() {
    return std::chrono::floor<FileTime::duration>(std::chrono::system_clock::now());
}

void VerdictStore::persist() const {
    write_(path_, [entries = entries_] { return encodeEntries(entries); });
}

void VerdictStore::replaceNow(const std::string& path, const Contents& contents) {
    if (const auto bytes = contents())
        (void)platform::replaceFile(path, *bytes);
}

void VerdictStore::notify() const {
    if (changed_)
        changed_();
}

}  // namespace ulvak

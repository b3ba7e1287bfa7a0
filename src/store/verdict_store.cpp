#include "store/verdict_store.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/files.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak {
namespace {

/// A rule identified the folder for certain. Among personal files, rules are about places, not about what is
/// there.
bool isSettledByRule(const Finding& finding) {
    return finding.original.source == VerdictSource::rule && finding.original.level != SafetyLevel::unknown &&
           !finding.isPersonal;
}

/// Whether an answer about a folder of the stored size may still hold.
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
            return false;  // recomputed by every scan
    }
    return false;
}

/// Or fails at once, or is on the home folder's volume, without which nothing here works.
bool answersAtOnce(const std::string& path, const std::string& home) {
    const platform::Reach reach({&home, 1}, platform::Reach::Others::prompt);
    return reach.includes(reach.follow(path).path);
}

}  // namespace

VerdictStore::VerdictStore(std::string path, Clock now, Runner write)
    : VerdictStore(std::move(path), UserFolders(), std::move(now), std::move(write), {}) {}

VerdictStore::VerdictStore(std::string path, const UserFolders& folders, Clock now, Runner write,
                           const Runner& read)
    : path_(std::move(path)),
      now_(std::move(now)),
      write_(std::move(write)),
      shared_(std::make_shared<SharedVerdicts>(path_, now_)) {
    if (read && !answersAtOnce(path_, folders.home)) {
        read([shared = shared_] { shared->load(); });
        return;
    }
    shared_->load();
    entries_ = shared_->entries();
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
    const VerdictEntry entry{.verdict = verdict, .size = finding.size, .date = StoredDate::from(now_())};
    entries_.insert_or_assign(finding.id, entry);
    shared_->change(finding.id, entry, entry.date);
    persist();
    notify();
}

void VerdictStore::remove(std::string_view id) {
    const auto found = entries_.find(id);
    const bool isThere = found != entries_.end();
    shared_->change(id, std::nullopt, StoredDate::from(now_()));
    if (isThere)
        entries_.erase(found);
    persist();
    if (isThere)
        notify();
}

bool VerdictStore::adopt() {
    VerdictEntries now = shared_->entries();
    if (now == entries_)
        return false;
    entries_ = std::move(now);
    notify();
    return true;
}

void VerdictStore::writeRest() {
    if (!shared_->isSaved())
        shared_->synchronize();
}

FileTime VerdictStore::systemTime() {
    return std::chrono::floor<FileTime::duration>(std::chrono::system_clock::now());
}

void VerdictStore::persist() {
    if (!shared_->request())
        return;
    if (write_) {
        write_([shared = shared_] { shared->synchronize(); });
        return;
    }
    shared_->synchronize();
    adopt();
}

void VerdictStore::notify() const {
    if (changed_)
        changed_();
}

}  // namespace ulvak

#include "store/shared_verdicts.h"

#include <chrono>
#include <expected>
#include <string>
#include <utility>

#include "core/paths.h"
#include "platform/durable_file.h"
#include "platform/files.h"

namespace ulvak {
namespace {

/// Far longer than any merge takes: by then, the process that holds the lock has been suspended.
constexpr std::chrono::seconds lockPatience{10};

std::optional<VerdictEntry> entryOf(const VerdictEntries& entries, std::string_view id) {
    const auto found = entries.find(id);
    return found == entries.end() ? std::nullopt : std::optional(found->second);
}

void put(VerdictEntries& entries, const std::string& id, const std::optional<VerdictEntry>& entry) {
    if (entry)
        entries.insert_or_assign(id, *entry);
    else
        entries.erase(id);
}

/// Retries once: a disk may fail once.
std::expected<std::string, std::error_code> readText(const std::string& path) {
    auto text = platform::readFile(path, maxVerdictFileBytes);
    if (!text && text.error() != std::errc::no_such_file_or_directory)
        text = platform::readFile(path, maxVerdictFileBytes);
    return text;
}

bool isNotUnderstood(const std::string& path) {
    const auto text = readText(path);
    return text && !decodeEntries(*text);
}

/// Copies a file that cannot be understood aside at once. Never overwrites the first copy, since what comes
/// later may be worth less, nor a file kept because it could not be read. Returns whether it was copied.
bool copiedAside(const std::string& path, const std::string& text) {
    constexpr int maxKept = 100;
    const std::string folder(Paths::parent(path));
    std::string kept = path + ".old";
    for (int number = 1; number <= maxKept; ++number) {
        const bool isTaken = platform::existsIn(folder, std::string(Paths::lastComponent(kept)));
        if (!isTaken || (number > 1 && isNotUnderstood(kept)))
            return !platform::replaceFile(kept, text);
        kept = path + ".old." + std::to_string(number);
    }
    return false;
}

}  // namespace

SharedVerdicts::SharedVerdicts(std::string path, Clock now) : path_(std::move(path)), now_(std::move(now)) {}

void SharedVerdicts::load() {
    const std::scoped_lock writing(writing_);
    // Dropped by design, here and below: no failure of the store reaches the user.
    (void)platform::makeFolders(std::string(Paths::parent(path_)));
    const auto text = readText(path_);
    if (!text)
        return;  // read again before it is written
    if (auto entries = decodeEntries(*text)) {
        const std::scoped_lock lock(mutex_);
        known_ = std::move(*entries);
    } else if (copiedAside(path_, *text)) {
        keptText_ = *text;
    }
}

VerdictEntries SharedVerdicts::entries() const {
    const std::scoped_lock lock(mutex_);
    VerdictEntries all = known_;
    for (const auto& [id, change] : changes_)
        put(all, id, change.entry);
    return all;
}

void SharedVerdicts::change(std::string_view id, std::optional<VerdictEntry> entry, StoredDate date) {
    const std::scoped_lock lock(mutex_);
    const auto earlier = changes_.find(id);
    auto before = earlier == changes_.end() ? entryOf(known_, id) : std::move(earlier->second.before);
    changes_.insert_or_assign(std::string(id),
                              Change{.entry = std::move(entry), .before = std::move(before), .date = date});
}

bool SharedVerdicts::request() {
    const std::scoped_lock lock(mutex_);
    isUnwritten_ = true;
    return !std::exchange(isRequested_, true);
}

bool SharedVerdicts::isSaved() const {
    const std::scoped_lock lock(mutex_);
    return !isUnwritten_;
}

void SharedVerdicts::synchronize() {
    const std::scoped_lock writing(writing_);
    {
        const std::scoped_lock lock(mutex_);
        isRequested_ = false;
    }
    // A disk may fail once, or a server lose its connection, and the user will not click again.
    if (mergeAndWrite())
        (void)mergeAndWrite();
}

SharedVerdicts::Found SharedVerdicts::look() const {
    auto text = readText(path_);
    if (!text)
        return {.isWorthKeeping = text.error() != std::errc::no_such_file_or_directory};
    if (auto entries = decodeEntries(*text))
        return {.entries = std::move(*entries)};
    return {.isWorthKeeping = text != keptText_};
}

std::error_code SharedVerdicts::mergeAndWrite() {
    (void)platform::makeFolders(std::string(Paths::parent(path_)));
    const platform::FileLock lock(path_, lockPatience);
    Found found = look();
    Changes changes;
    VerdictEntries entries;
    {
        const std::scoped_lock state(mutex_);
        if (found.entries)
            known_ = *found.entries;  // even if nothing can be written
        changes = changes_;
        entries = known_;
        isUnwritten_ = false;
    }
    entries = merged(std::move(entries), changes);
    const auto text = encodeEntries(entries);
    const auto replace = found.isWorthKeeping ? platform::replaceFileKeepingOld : platform::replaceFile;
    const std::error_code error =
        text ? replace(path_, *text) : std::make_error_code(std::errc::invalid_argument);
    if (error) {
        const std::scoped_lock state(mutex_);
        isUnwritten_ = true;
    } else {
        keptText_.reset();
        settle(std::move(entries), changes);
    }
    return error;
}

bool SharedVerdicts::isNewer(StoredDate there, StoredDate here) const {
    return there.secondsSince2001 > here.secondsSince2001 &&
           there.secondsSince2001 <= StoredDate::from(now_()).secondsSince2001;
}

bool SharedVerdicts::givesWay(const Change& change, const VerdictEntry& there) const {
    if (there == change.before)
        return false;
    const bool replacesTheUsers = change.entry && change.entry->verdict.source != VerdictSource::user &&
                                  there.verdict.source == VerdictSource::user;
    return replacesTheUsers || isNewer(there.date, change.date);
}

VerdictEntries SharedVerdicts::merged(VerdictEntries entries, const Changes& changes) const {
    for (const auto& [id, change] : changes) {
        const auto there = entries.find(id);
        if (there == entries.end() || !givesWay(change, there->second))
            put(entries, id, change.entry);
    }
    return entries;
}

void SharedVerdicts::settle(VerdictEntries written, const Changes& changes) {
    const std::scoped_lock lock(mutex_);
    for (const auto& [id, change] : changes) {
        const auto now = changes_.find(id);
        if (now == changes_.end())
            continue;
        if (now->second == change)
            changes_.erase(now);
        else
            now->second.before = entryOf(written, id);  // changed again meanwhile, on top of this one
    }
    known_ = std::move(written);
}

}  // namespace ulvak

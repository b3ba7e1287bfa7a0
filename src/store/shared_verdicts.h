#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/file_time.h"
#include "store/verdict_file.h"

namespace ulvak {

/// The verdicts in a file that other programs write too, for instance two windows of one user. Local changes
/// are kept apart until they are in the file; everything else is as the file has it. So nobody's label is
/// lost because another program did not know of it.
///
/// Of two changes to one entry, the one with the later date wins, with two exceptions. A model's answer never
/// replaces a user's label that was not known when the model was asked. And a program that changes an entry
/// has seen it, so its change wins even over a later date: then a clock was set back. A date in the future
/// does not win either.
///
/// A file that cannot be read or understood is never overwritten: a new file takes its name, and the old one
/// is kept beside it (`replaceFileKeepingOld`). A missing file is not such a case: it is recreated with
/// everything that is known.
///
/// Threads: any. `load` and `synchronize` block on the disk; the others never block on it.
class SharedVerdicts {
public:
    using Clock = std::function<FileTime()>;

    /// `now` is called on any thread.
    SharedVerdicts(std::string path, Clock now);

    /// The first read; creates the file's folder.
    void load();

    /// All known entries, including local changes.
    [[nodiscard]] VerdictEntries entries() const;

    /// Records a new entry, or a removal if `entry` is empty.
    void change(std::string_view id, std::optional<VerdictEntry> entry, StoredDate date);

    /// Requests a `synchronize`. Returns false if one is already pending, which is enough.
    [[nodiscard]] bool request();

    /// Merges local changes with the file, under a lock that all such programs take. What cannot be written
    /// stays a local change until the next time.
    void synchronize();

    /// Whether all local changes are in the file.
    [[nodiscard]] bool isSaved() const;

private:
    /// A local change to one entry since it was last in the file.
    struct Change {
        std::optional<VerdictEntry> entry;   ///< nullopt: removed
        std::optional<VerdictEntry> before;  ///< as the file had it when the change was made
        StoredDate date;

        friend bool operator==(const Change&, const Change&) = default;
    };
    using Changes = std::map<std::string, Change, std::less<>>;

    /// The file's current content.
    struct Found {
        std::optional<VerdictEntries> entries;  ///< nullopt: nothing that could be merged
        bool isWorthKeeping = false;            ///< contains something that this program has not read
    };

    [[nodiscard]] Found look() const;
    [[nodiscard]] std::error_code mergeAndWrite();
    [[nodiscard]] VerdictEntries merged(VerdictEntries entries, const Changes& changes) const;
    /// Whether a change loses to the entry that is there.
    [[nodiscard]] bool givesWay(const Change& change, const VerdictEntry& there) const;
    [[nodiscard]] bool isNewer(StoredDate there, StoredDate here) const;
    void settle(VerdictEntries written, const Changes& changes);

    const std::string path_;
    const Clock now_;
    std::mutex writing_;  ///< held while reading or writing the file; locked before `mutex_`
    std::optional<std::string>
        keptText_;  ///< not understood, but already copied aside; guarded by `writing_`

    mutable std::mutex mutex_;
    VerdictEntries known_;      ///< as last seen in the file; guarded by `mutex_`, written while holding both
    Changes changes_;           ///< guarded by `mutex_`
    bool isRequested_ = false;  ///< guarded by `mutex_`
    bool isUnwritten_ = false;  ///< guarded by `mutex_`
};

}  // namespace ulvak

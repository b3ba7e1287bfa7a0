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

/// The verdicts in a file that other programs write too, two windows of one user, say. What was changed here
/// is kept apart until it is in the file; all else is as the file has it. So nobody's label is lost because
/// somebody else did not know of it.
///
/// Of two changes to one entry the later counts, by their dates; but no answer of a model replaces a label of
/// the user's that was not seen when the model was asked. And whoever changes an entry has seen it: it
/// gives way also when its date is later, for then a clock has been set back. The same goes for a date that
/// has not come yet.
///
/// A file that cannot be read or understood is never replaced: a new one takes its name, and it stays beside
/// that (`replaceFileKeepingOld`). A file that is missing is none of these: it is made again, with all that
/// is known.
///
/// Threads: any. `load` and `synchronize` block until the disk has answered, the others never do.
class SharedVerdicts {
public:
    using Clock = std::function<FileTime()>;

    /// `now` is called on any thread.
    SharedVerdicts(std::string path, Clock now);

    /// The first look, which makes the file's folder.
    void load();

    /// All that is known, with what was changed here.
    [[nodiscard]] VerdictEntries entries() const;

    /// Notes a new entry, or that one is to go when there is none.
    void change(std::string_view id, std::optional<VerdictEntry> entry, StoredDate date);

    /// Asks for a `synchronize`. False when one is to come already, which will do.
    [[nodiscard]] bool request();

    /// Merges what was changed here with the file, under a lock that every such program takes. What cannot be
    /// written stays changed here, for the next time.
    void synchronize();

    /// Whether everything that was changed here is in the file.
    [[nodiscard]] bool isSaved() const;

private:
    /// What happened to one entry here since it was last in the file.
    struct Change {
        std::optional<VerdictEntry> entry;   ///< none: removed
        std::optional<VerdictEntry> before;  ///< as the file had it when it was changed
        StoredDate date;

        friend bool operator==(const Change&, const Change&) = default;
    };
    using Changes = std::map<std::string, Change, std::less<>>;

    /// What the file holds now.
    struct Found {
        std::optional<VerdictEntries> entries;  ///< none: nothing that could be merged
        bool isWorthKeeping = false;            ///< there is something that nobody here has read
    };

    [[nodiscard]] Found look() const;
    [[nodiscard]] std::error_code mergeAndWrite();
    [[nodiscard]] VerdictEntries merged(VerdictEntries entries, const Changes& changes) const;
    /// Whether a change gives way to the entry that is there.
    [[nodiscard]] bool givesWay(const Change& change, const VerdictEntry& there) const;
    [[nodiscard]] bool isNewer(StoredDate there, StoredDate here) const;
    void settle(VerdictEntries written, const Changes& changes);

    const std::string path_;
    const Clock now_;
    std::mutex writing_;                   ///< held by who reads or writes the file; before `mutex_`
    std::optional<std::string> keptText_;  ///< not understood, but copied already; guarded by `writing_`

    mutable std::mutex mutex_;
    VerdictEntries known_;      ///< as the file had it last; guarded by `mutex_`, written under both
    Changes changes_;           ///< guarded by `mutex_`
    bool isRequested_ = false;  ///< guarded by `mutex_`
    bool isUnwritten_ = false;  ///< guarded by `mutex_`
};

}  // namespace ulvak

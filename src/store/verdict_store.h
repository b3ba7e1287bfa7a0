#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/paths.h"
#include "store/shared_verdicts.h"
#include "store/verdict_file.h"

namespace ulvak {

/// Remembers across runs which verdict the user or the model gave to which finding. Entries go only by
/// `remove`; those for items that no longer exist stay.
///
/// Threads: UI thread only. With a runner for reading, start-up does not wait for a file on a volume that may
/// never answer. `save` and `remove` write the whole file and, unless a runner for writing is given, block on
/// the disk; once they are done, neither a kill nor a power cut loses the entry. Several programs sharing one
/// file lose none of each other's entries (`SharedVerdicts`).
///
/// Failures: silent by design. An unreadable file counts as empty, and is kept beside the file that the next
/// `save` creates. A file that can be read but not understood is copied aside at once, if possible. What
/// cannot be written is remembered until the program ends, and the file stays as it was.
class VerdictStore {
public:
    using Clock = SharedVerdicts::Clock;
    /// Runs a job now or later, on any thread; afterwards `adopt` must be called on the store's thread. At
    /// most one job is pending. A job may run after the store is destroyed.
    using Runner = std::function<void(std::function<void()> job)>;

    [[nodiscard]] static FileTime systemTime();

    /// Creates the folder of the file at `path` and reads the file. `write` runs the job for each change;
    /// without it, jobs run immediately.
    explicit VerdictStore(std::string path, Clock now = systemTime, Runner write = {});
    /// The same, but if the file's volume may never answer, `read` runs the job that reads it, and `entries`
    /// lacks its content until `adopt`. The home folder's volume always counts as answering.
    VerdictStore(std::string path, const UserFolders& folders, Clock now, Runner write, const Runner& read);
    VerdictStore(const VerdictStore&) = delete;
    VerdictStore& operator=(const VerdictStore&) = delete;

    /// Where a user's verdicts are stored: "Ulvak/verdicts.json" in the user's application data folder.
    [[nodiscard]] static std::string defaultPath(const UserFolders& folders);

    /// Includes other programs' entries as of the last job.
    [[nodiscard]] const VerdictEntries& entries() const { return entries_; }
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Calls `changed` whenever `entries` have changed, after the file was written. Only one observer;
    /// initially none.
    void observe(std::function<void()> changed) { changed_ = std::move(changed); }

    /// Applies the remembered verdict to a finding. The user's always applies; a model's only if the folder
    /// still has roughly the size that was judged (between half and double) and no rule knows better.
    void apply(Finding& finding) const;

    void save(const Verdict& verdict, const Finding& finding);

    /// Writes the file even if there is no such entry.
    void remove(std::string_view id);

    /// Takes over what a job found in the file. Returns whether anything was new.
    bool adopt();

    /// Retries writing whatever could not be written, on this thread. For use at exit.
    void writeRest();

private:
    void persist();
    void notify() const;

    std::string path_;
    Clock now_;
    Runner write_;
    std::function<void()> changed_;
    std::shared_ptr<SharedVerdicts> shared_;
    VerdictEntries entries_;  ///< mirrors `shared_`
};

}  // namespace ulvak

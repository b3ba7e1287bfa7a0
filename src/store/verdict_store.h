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

/// Remembers from run to run which verdict the user or the model gave to which finding. Nothing is ever
/// forgotten but by `remove`; entries for what is no longer there stay.
///
/// Threads: the UI thread only. A file on a volume that may never answer is not waited for at the start where
/// there is a runner for reading. `save` and `remove` write the whole file and, unless another runner is
/// given, block until the disk has answered; after that neither a kill nor a power cut loses the entry.
/// Several programs with one file lose nothing of each other's (`SharedVerdicts`). Failures: silent by
/// design. What cannot be read is empty, and stays beside the file that the next `save` makes; what can be
/// read but not understood is copied there at once, if that can be done. What cannot be written is remembered
/// until the program ends, and the file stays as it was.
class VerdictStore {
public:
    using Clock = SharedVerdicts::Clock;
    /// Runs a job at once or later, on any thread; afterwards somebody calls `adopt` on the store's. Never
    /// two jobs wait. A job can run when the store is gone.
    using Runner = std::function<void(std::function<void()> job)>;

    [[nodiscard]] static FileTime systemTime();

    /// Makes the folder of the file at `path` and reads the file. `write` runs the job of every change;
    /// without it, they run at once.
    explicit VerdictStore(std::string path, Clock now = systemTime, Runner write = {});
    /// The same, but where nobody knows when the file's volume answers, `read` runs the job that reads it,
    /// and `entries` lack what it says until it is adopted. The volume of the home folder always counts as
    /// one that answers.
    VerdictStore(std::string path, const UserFolders& folders, Clock now, Runner write, const Runner& read);
    VerdictStore(const VerdictStore&) = delete;
    VerdictStore& operator=(const VerdictStore&) = delete;

    /// Where a user's verdicts are: "Ulvak/verdicts.json" among the data of this user's applications.
    [[nodiscard]] static std::string defaultPath(const UserFolders& folders);

    /// Those of other programs as of the last job.
    [[nodiscard]] const VerdictEntries& entries() const { return entries_; }
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Calls `changed` whenever `entries` have changed, after the file was written. One observer; none to
    /// begin with.
    void observe(std::function<void()> changed) { changed_ = std::move(changed); }

    /// Lays the remembered verdict over a finding. The user's always; a model's only if the folder still has
    /// about the size that it judged (between half and double), and no rule knows better.
    void apply(Finding& finding) const;

    void save(const Verdict& verdict, const Finding& finding);

    /// Writes the file also when there is no such entry.
    void remove(std::string_view id);

    /// Takes over what a job has found in the file. Whether that was anything new.
    bool adopt();

    /// Tries once more to write what could not be written, on this thread: for the end of the program.
    void writeRest();

private:
    void persist();
    void notify() const;

    std::string path_;
    Clock now_;
    Runner write_;
    std::function<void()> changed_;
    std::shared_ptr<SharedVerdicts> shared_;
    VerdictEntries entries_;  ///< as `shared_` has them
};

}  // namespace ulvak

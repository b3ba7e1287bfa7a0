#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/paths.h"
#include "store/verdict_file.h"

namespace ulvak {

/// Remembers from run to run which verdict the user or the model gave to which finding. Nothing is ever
/// forgotten but by `remove`; entries for what is no longer there stay.
///
/// Threads: the UI thread only. `save` and `remove` write the whole file and, unless another writer is given,
/// block until the disk has answered; after that not even a power cut loses the entry. Two programs with one
/// file: each writes what it knows, and the later one wins. Failures: silent by design. What cannot be read
/// is empty, and the next `save` replaces it; a file that can be read but not understood is first copied, if
/// that can be done, to one named ".old" beside it (".old.1" when that is there), for it may be all that
/// somebody ever decided. What cannot be written is
/// remembered until the program ends, and the file stays as it was.
class VerdictStore {
public:
    using Clock = std::function<FileTime()>;
    /// What the file is to hold; absent when it cannot be put into words. Can be called on any thread, also
    /// when the store is gone: thousands of labels take their time.
    using Contents = std::function<std::optional<std::string>()>;
    /// Puts the contents into the file at that path, whole or not at all.
    using Writer = std::function<void(const std::string& path, Contents contents)>;

    [[nodiscard]] static FileTime systemTime();

    /// Makes the folder of the file at `path` and reads the file.
    explicit VerdictStore(std::string path, Clock now = systemTime, Writer write = replaceNow);
    VerdictStore(const VerdictStore&) = delete;
    VerdictStore& operator=(const VerdictStore&) = delete;

    /// Where a user's verdicts are: "Ulvak/verdicts.json" among the data of this user's applications.
    [[nodiscard]] static std::string defaultPath(const UserFolders& folders = Paths::folders());

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

private:
    static void replaceNow(const std::string& path, const Contents& contents);
    void persist() const;
    void notify() const;

    std::string path_;
    Clock now_;
    Writer write_;
    std::function<void()> changed_;
    VerdictEntries entries_;
};

}  // namespace ulvak

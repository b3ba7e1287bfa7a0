#pragma once

#include <QObject>
#include <QString>
#include <QUuid>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <qcoro/qcorotask.h>

#include "ai/ai_status.h"
#include "app/app_services.h"
#include "app/cleaned_paths.h"
#include "app/workers.h"
#include "core/disk_info.h"
#include "core/finding.h"
#include "store/verdict_store.h"

class QTimer;

namespace ulvak {

/// A finding as the application holds it: immutable, only ever replaced.
using FindingPointer = std::shared_ptr<const Finding>;
using Findings = std::vector<FindingPointer>;

/// The state of the window program, and the one place where user actions become work.
///
/// Threads: the UI thread only, including reads; calling an operation from another thread ends the program.
/// Long work runs on workers; results are applied on the UI thread. Every field has a signal, sent only when
/// the field changes.
/// Failures: operations never fail; what goes wrong ends up in `alert`, which holds the latest.
///
/// Once the window is shown, nothing blocks it: workers check whether the model is available and which
/// applications are running, and write remembered verdicts; the last write finishes before this object is
/// destroyed. After an await, operations use the list as it is by then.
class AppModel : public QObject {
    Q_OBJECT
public:
    /// `done` means there is a result, `idle` that there is none.
    enum class Phase : std::uint8_t { idle, scanning, done };

    struct AlertInfo {
        QUuid id;  ///< distinguishes alerts with the same texts
        std::string title;
        std::string message;

        friend bool operator==(const AlertInfo&, const AlertInfo&) = default;
    };

    struct BatchProgress {
        std::int64_t done = 0;
        std::int64_t total = 0;

        friend bool operator==(const BatchProgress&, const BatchProgress&) = default;
    };

    /// Asked before emptying a Trash that holds more than this program put there.
    struct TrashQuestion {
        QUuid id;  ///< distinguishes questions about the same contents
        std::shared_ptr<const Cleaner::TrashContents> contents;  ///< as listed, and all that will be removed

        friend bool operator==(const TrashQuestion& one, const TrashQuestion& other) {
            return one.id == other.id;
        }
    };

    /// Reads the remembered verdicts at `verdictsPath` and the disk's capacity on this thread, so that the
    /// window starts with both. Verdicts on a volume that may never answer are read on another thread and
    /// shown when they arrive. Does not start a scan.
    explicit AppModel(AppServices services, std::string verdictsPath, QObject* parent = nullptr);
    /// Stops what can be stopped and waits for the rest. Results are no longer applied; labels are written.
    ~AppModel() override;

    [[nodiscard]] Phase phase() const { return phase_; }
    /// In the scan's order, largest first.
    [[nodiscard]] const Findings& findings() const { return findings_; }
    [[nodiscard]] const std::optional<DiskInfo>& disk() const { return disk_; }
    /// Unavailable, without a reason, until the first answer. A model that was available stays so while it is
    /// slow to answer.
    [[nodiscard]] const AIStatus& aiStatus() const { return aiStatus_; }
    [[nodiscard]] std::int64_t scannedFiles() const { return scannedFiles_; }
    [[nodiscard]] std::int64_t scannedBytes() const { return scannedBytes_; }
    /// As shown to the user; names are raw bytes from the disk.
    [[nodiscard]] const std::string& currentPath() const { return currentPath_; }
    [[nodiscard]] std::int64_t deniedCount() const { return deniedCount_; }
    /// How long the last completed scan took, in seconds.
    [[nodiscard]] std::optional<double> scanDuration() const { return scanDuration_; }
    [[nodiscard]] const std::set<std::string>& analyzing() const { return analyzing_; }
    [[nodiscard]] const std::optional<BatchProgress>& batchProgress() const { return batchProgress_; }
    [[nodiscard]] const std::set<std::string>& cleaning() const { return cleaning_; }
    /// Moved to the Trash since the program started and not yet emptied.
    [[nodiscard]] std::int64_t trashedBytes() const { return trashedBytes_; }
    /// Actually freed since the program started.
    [[nodiscard]] std::int64_t freedBytes() const { return freedBytes_; }
    [[nodiscard]] const std::optional<AlertInfo>& alert() const { return alert_; }
    [[nodiscard]] const std::optional<TrashQuestion>& trashQuestion() const { return trashQuestion_; }
    [[nodiscard]] const VerdictStore& store() const { return store_; }
    /// Of the user whose files these are.
    [[nodiscard]] const UserFolders& folders() const { return services_.folders; }
    /// Whether `openFullDiskAccessSettings` does anything on this system.
    [[nodiscard]] bool hasPrivacySettings() const { return services_.hasPrivacySettings; }

    /// During `findingsChanged`: the findings that were removed, if nothing else changed; empty otherwise.
    /// Spares listeners a pass over everything that stays when thousands are removed in small steps.
    [[nodiscard]] const Findings& removed() const { return removed_; }

    /// Those of a level, in the order of `findings`.
    [[nodiscard]] Findings findings(SafetyLevel level) const;
    /// Their total, in bytes.
    [[nodiscard]] std::int64_t total(SafetyLevel level) const { return sums(level).bytes; }
    [[nodiscard]] std::int64_t count(SafetyLevel level) const { return sums(level).count; }
    /// Whether any of them was guessed from a name.
    [[nodiscard]] bool hasGuesses(SafetyLevel level) const { return sums(level).guesses > 0; }
    /// The first with exactly this id, or null.
    [[nodiscard]] FindingPointer finding(std::string_view id) const;
    /// Number of uncertain findings, including those the user labelled unknown.
    [[nodiscard]] std::int64_t uncertainCount() const;
    /// Number that `analyzeAllUncertain` would ask about: the uncertain ones the user has not labelled.
    [[nodiscard]] std::int64_t batchCount() const;

    /// Starts a scan; no-op if one is running. The previous result stays until the new one replaces it.
    void scan();
    /// Abandons the running scan. Its walk still runs to the end, but the result is dropped.
    void cancelScan();

    void setLevel(SafetyLevel level, std::string_view id);
    void resetVerdict(std::string_view id);

    /// Asks the model about one finding, which is in `analyzing` meanwhile. `note` is what the user knows
    /// about it; may be empty. The answer is applied only if the finding's verdict has not changed since the
    /// call.
    QCoro::Task<> analyze(std::string id, std::string note);
    /// Asks about every uncertain finding that the user has not labelled, one at a time, and stops if the
    /// model becomes unavailable. Failures are reported once, at the end. Replaces a running batch, whose
    /// remaining progress is ignored.
    void analyzeAllUncertain();
    /// Stops the batch after the current finding.
    void cancelBatch();

    /// Cleans the findings one at a time and applies results in groups, each as large as a moment allows.
    /// Skips findings that are already being cleaned. Does not confirm: the caller has asked the user.
    QCoro::Task<> clean(std::vector<std::string> ids, CleanMode mode);

    /// Whether a `clean` or the emptying of the Trash is in progress.
    [[nodiscard]] bool isCleaning() const { return cleans_ > 0 || empties_ > 0; }

    /// For a window about to close: finishes the item being removed and cleans nothing after it. `alert` then
    /// says what was left and why, if anything.
    void stopCleaning();
    /// Empties the Trash at once if it holds only what this program has put there since it started;
    /// otherwise, or if that is unknown, asks through `trashQuestion`.
    QCoro::Task<> emptyTrash();
    /// Always asks first.
    QCoro::Task<> askToEmptyTrash();
    /// Confirms a question; no-op if another is being asked by now. Anything added to the Trash since is left
    /// alone and asked about in turn.
    QCoro::Task<> emptyTrashAsAsked(QUuid question);
    void dismissTrashQuestion();

    /// Performs the `findingActions` entry with this name; no-op if there is none. Failures raise an alert.
    QCoro::Task<> perform(std::string_view action, const Finding& finding);
    QCoro::Task<> reveal(const Finding& finding) { return perform("reveal", finding); }
    void openFullDiskAccessSettings();
    void dismissAlert();

    /// For program exit: asks everything running to stop and returns whether it did within `time`.
    /// Afterwards, only `finishLasting` and the destructor may be called.
    [[nodiscard]] bool finish(std::chrono::milliseconds time);

    /// Waits as long as it takes until labels are written and the item being removed is gone; exiting earlier
    /// would lose labels or leave half an item. Call after `finish`.
    void finishLasting();

signals:
    void phaseChanged();
    /// After any change to the list or to a finding in it.
    void findingsChanged();
    void diskChanged();
    void aiStatusChanged();
    void scannedFilesChanged();
    void scannedBytesChanged();
    void currentPathChanged();
    void deniedCountChanged();
    void scanDurationChanged();
    void analyzingChanged();
    void batchProgressChanged();
    void cleaningChanged();
    /// No cleaning is in progress any more; `alert` holds anything there is to say about it.
    void cleaningEnded();
    void trashedBytesChanged();
    void freedBytesChanged();
    void alertChanged();
    void trashQuestionChanged();

private:
    using Index = std::unordered_map<std::string_view, FindingPointer>;  ///< the first with each id
    struct Scan;
    struct Batch;
    struct Asked;
    struct Cleaning;
    struct CleanResult;

    template <typename Value>
    void assign(Value& field, std::type_identity_t<Value> value, void (AppModel::*changed)()) {
        if (field == value)
            return;
        field = std::move(value);
        (this->*changed)();
    }

    void expectUiThread() const;
    void showAlert(std::string title, std::string message);
    void copyCounters(const ScanProgress& progress);
    void setStatus(AIStatus status);
    /// Takes the answer to status query number `question`.
    void learnStatus(std::uint64_t question, AIStatus status);
    void askStatusAgainLater();
    void refreshDisk() { assign(disk_, services_.diskInfo(), &AppModel::diskChanged); }

    /// The finding with this id if this is still its verdict, else null.
    [[nodiscard]] FindingPointer withVerdict(std::string_view id, const Verdict& verdict) const;
    /// True if the model answered in time.
    QCoro::Task<bool> refreshStatus();
    QCoro::Task<Asked> ask(std::string id, std::string note);
    QCoro::Task<Asked> askAbout(FindingPointer chosen, std::string note);
    QCoro::Task<> runForLabels(Workers& workers, std::function<void()> job);
    /// Applies labels read from the disk in the meantime to the list.
    void showLabels();
    /// Shows how far it is, until the timer is stopped.
    void watch(const std::shared_ptr<Scan>& scan, QTimer& poller);
    QCoro::Task<> runScan(std::shared_ptr<Scan> scan);
    /// The scan's findings without what was cleaned while it ran. Absent if the scan was cancelled, or is
    /// restarted because a size is unknown.
    QCoro::Task<std::optional<MutableFindings>> withoutCleaned(std::shared_ptr<Scan> scan,
                                                               MutableFindings found);
    QCoro::Task<> runBatch(std::shared_ptr<Batch> batch, std::vector<std::string> ids);
    void tellBatch(const Batch& batch);
    /// Those that can be cleaned, in the given order, each with the running applications that use its files.
    QCoro::Task<std::vector<Cleaning>> readyToClean(std::vector<std::string> ids);
    [[nodiscard]] std::vector<Cleaning> cleanable(std::span<const std::string> ids) const;
    QCoro::Task<> cleanInTurn(std::vector<std::string> ids, CleanMode mode);
    /// Fills in results for as many as a moment allows.
    QCoro::Task<> cleanTogether(std::vector<Cleaning>& turns, CleanMode mode);
    void markCleaning(const std::vector<Cleaning>& turns, bool isCleaning);
    void applyCleaned(const std::vector<Cleaning>& turns, CleanMode mode);
    void applyFailed(const Cleaning& turn);
    /// Records it in the running scan, or in `late` if a scan has ended since the finding was chosen.
    void noteCleaned(const Cleaning& turn, CleanMode mode, CleanedPaths& late);
    /// Whether the list, replaced by a scan in the meantime, overlaps what was cleaned in more than the
    /// removed findings themselves: only another scan can tell the sizes.
    [[nodiscard]] bool isOutdated(const CleanedPaths& late, const std::vector<Cleaning>& turns) const;
    QCoro::Task<std::shared_ptr<const Cleaner::TrashContents>> lookAtTrash();
    void askAboutTrash(std::shared_ptr<const Cleaner::TrashContents> contents);
    void noteTouchedTrash(CleanedPaths& cleaned) const;
    /// The Trash's findings have this many bytes less, or are gone.
    void shrinkTrash(std::int64_t freed, bool isEmpty);
    /// True if something was added to the Trash in the meantime.
    QCoro::Task<bool> emptyWhatWasSeen(std::shared_ptr<const Cleaner::TrashContents> seen);
    /// Nothing when the program ends meanwhile.
    QCoro::Task<Cleaner::EmptiedTrash> emptySeen(std::shared_ptr<const Cleaner::TrashContents> seen);
    QCoro::Task<bool> emptyAndTell(std::shared_ptr<const Cleaner::TrashContents> seen);
    /// Counts what is left of ours in the Trash, for the total.
    QCoro::Task<> countTrashed();
    void recordTrashed();
    /// Records a finding the user wanted cleaned that is still there.
    void leave(const Finding& finding, std::string why);
    /// After `stopCleaning`, once no cleaning is in progress.
    void tellWhatIsLeft();
    /// `index` is that of `result`, or empty if unknown.
    void replaceFindings(MutableFindings result, Index index);
    /// Frees on a worker: thousands of records take time.
    template <typename List>
    void freeElsewhere(List list);
    /// Over the findings of one level, or of all.
    struct Sums {
        std::int64_t bytes = 0;
        std::int64_t count = 0;
        std::int64_t guesses = 0;
        std::int64_t uncertain = 0;
        std::int64_t forBatch = 0;

        void add(const Finding& finding, std::int64_t sign);
    };
    [[nodiscard]] Sums sums(SafetyLevel level) const;
    [[nodiscard]] std::int64_t sumOfAll(std::int64_t Sums::* field) const;

    [[nodiscard]] Index& index() const;
    void removeFindings(const std::unordered_set<std::string_view>& ids);

    /// Runs a removal on a worker, like `Workers::run`; removals are serialised.
    template <typename Function>
    auto oneAtATime(Function function);
    /// Replaces a finding with a changed copy and returns the copy.
    template <typename Change>
    FindingPointer change(Findings::const_iterator place, Change change);
    [[nodiscard]] Findings::const_iterator find(std::string_view id) const;

    AppServices services_;
    std::stop_source stop_;
    bool isEnding_ = false;
    std::shared_ptr<std::mutex> removal_ = std::make_shared<std::mutex>();  ///< held while removing

    Phase phase_ = Phase::idle;
    Findings findings_;
    std::uint64_t lists_ = 0;  ///< number of lists scans have produced so far
    Findings removed_;
    // Caches over `findings_`, filled on first use.
    mutable std::optional<std::map<SafetyLevel, Sums>> sums_;
    mutable std::optional<Index> index_;
    std::optional<DiskInfo> disk_;
    AIStatus aiStatus_;
    std::uint64_t statusQuestions_ = 0;  ///< sent so far
    std::uint64_t statusKnown_ = 0;      ///< the latest that was answered
    bool willAskStatus_ = false;
    std::int64_t scannedFiles_ = 0;
    std::int64_t scannedBytes_ = 0;
    std::string currentPath_;
    std::int64_t deniedCount_ = 0;
    std::optional<double> scanDuration_;
    std::set<std::string> analyzing_;
    std::optional<BatchProgress> batchProgress_;
    std::set<std::string> cleaning_;
    struct Left {
        std::string title;
        std::string why;  ///< empty when nothing of it was touched
    };
    std::stop_source cleanStop_;
    int cleans_ = 0;                    ///< calls of `clean` in progress
    int empties_ = 0;                   ///< calls that empty the Trash in progress
    std::int64_t cleanedFindings_ = 0;  ///< by those calls
    std::vector<Left> left_;            ///< by those calls
    std::int64_t trashedBytes_ = 0;
    std::int64_t freedBytes_ = 0;
    std::vector<platform::TrashedItem> trashed_;          ///< since the start, if possibly still there
    std::vector<platform::TrashedItem> unrecordedTrash_;  ///< the latest of these
    std::optional<AlertInfo> alert_;
    std::optional<TrashQuestion> trashQuestion_;
    std::unique_ptr<Workers> workers_;  ///< work that may be abandoned at exit
    std::unique_ptr<Workers> lasting_;  ///< work that must finish: writing labels, removing an item
    VerdictStore store_;
    std::shared_ptr<Scan> scan_;
    std::shared_ptr<Batch> batch_;
};

}  // namespace ulvak

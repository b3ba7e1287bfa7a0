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

/// A finding as the application holds it: never changed, only replaced by another.
using FindingPointer = std::shared_ptr<const Finding>;
using Findings = std::vector<FindingPointer>;

/// The state of the program with its window, and the one place where what the user does becomes work.
///
/// Threads: the UI thread only, reading included; an operation that is called from another ends the program.
/// Long work runs on workers, and its results are applied on the UI thread. Every field has a signal, which
/// is sent only when the field has changed.
/// Failures: operations never fail; what goes wrong ends up in `alert`, which holds the last one.
///
/// The window, once it is there, is never held: whether the model can be used and which applications run is
/// asked on workers and awaited, and remembered verdicts are written by one, the last of them before this
/// object is gone. Operations that await go on with what the list holds by then.
class AppModel : public QObject {
    Q_OBJECT
public:
    /// `done` means that a result is there, `idle` that none is.
    enum class Phase : std::uint8_t { idle, scanning, done };

    struct AlertInfo {
        QUuid id;  ///< tells two alerts with the same texts apart
        std::string title;
        std::string message;

        friend bool operator==(const AlertInfo&, const AlertInfo&) = default;
    };

    struct BatchProgress {
        std::int64_t done = 0;
        std::int64_t total = 0;

        friend bool operator==(const BatchProgress&, const BatchProgress&) = default;
    };

    /// Asked before the Trash is emptied of more than was put there from here.
    struct TrashQuestion {
        QUuid id;                                                ///< tells two questions about the same apart
        std::shared_ptr<const Cleaner::TrashContents> contents;  ///< what was looked at, and all that goes

        friend bool operator==(const TrashQuestion& one, const TrashQuestion& other) {
            return one.id == other.id;
        }
    };

    /// Reads the remembered verdicts at `verdictsPath` and asks for the disk's capacity, on this thread: the
    /// window is to begin with both. Verdicts on a volume that may never answer are read on another thread
    /// and shown when they are there. Nothing is scanned yet.
    explicit AppModel(AppServices services, std::string verdictsPath, QObject* parent = nullptr);
    /// Stops what can be stopped and waits for the rest. Nothing is applied any more; labels are written.
    ~AppModel() override;

    [[nodiscard]] Phase phase() const { return phase_; }
    /// In the order in which the scan returned them, largest first.
    [[nodiscard]] const Findings& findings() const { return findings_; }
    [[nodiscard]] const std::optional<DiskInfo>& disk() const { return disk_; }
    /// Not available, without a reason, until the first answer is there. A model that was available stays so
    /// while it does not answer in time.
    [[nodiscard]] const AIStatus& aiStatus() const { return aiStatus_; }
    [[nodiscard]] std::int64_t scannedFiles() const { return scannedFiles_; }
    [[nodiscard]] std::int64_t scannedBytes() const { return scannedBytes_; }
    /// As shown to the user; the bytes of names on the disk.
    [[nodiscard]] const std::string& currentPath() const { return currentPath_; }
    [[nodiscard]] std::int64_t deniedCount() const { return deniedCount_; }
    /// Seconds that the last completed scan took.
    [[nodiscard]] std::optional<double> scanDuration() const { return scanDuration_; }
    [[nodiscard]] const std::set<std::string>& analyzing() const { return analyzing_; }
    [[nodiscard]] const std::optional<BatchProgress>& batchProgress() const { return batchProgress_; }
    [[nodiscard]] const std::set<std::string>& cleaning() const { return cleaning_; }
    /// Moved to the Trash since the program started, and not emptied yet.
    [[nodiscard]] std::int64_t trashedBytes() const { return trashedBytes_; }
    /// Really freed since the program started.
    [[nodiscard]] std::int64_t freedBytes() const { return freedBytes_; }
    [[nodiscard]] const std::optional<AlertInfo>& alert() const { return alert_; }
    [[nodiscard]] const std::optional<TrashQuestion>& trashQuestion() const { return trashQuestion_; }
    [[nodiscard]] const VerdictStore& store() const { return store_; }
    /// Of the user whose files these are.
    [[nodiscard]] const UserFolders& folders() const { return services_.folders; }
    /// Whether `openFullDiskAccessSettings` leads anywhere on this system.
    [[nodiscard]] bool hasPrivacySettings() const { return services_.hasPrivacySettings; }

    /// While `findingsChanged` is told: those that have gone, if nothing else has changed; empty otherwise.
    /// Where thousands go bit by bit, nobody need look through all that stay.
    [[nodiscard]] const Findings& removed() const { return removed_; }

    /// Those of a level, in the order of `findings`.
    [[nodiscard]] Findings findings(SafetyLevel level) const;
    /// Bytes of those together.
    [[nodiscard]] std::int64_t total(SafetyLevel level) const { return sums(level).bytes; }
    [[nodiscard]] std::int64_t count(SafetyLevel level) const { return sums(level).count; }
    /// Whether any of those was guessed from a name.
    [[nodiscard]] bool hasGuesses(SafetyLevel level) const { return sums(level).guesses > 0; }
    /// The first with exactly this id; null when there is none.
    [[nodiscard]] FindingPointer finding(std::string_view id) const;
    /// How many are uncertain, those that the user calls unknown among them.
    [[nodiscard]] std::int64_t uncertainCount() const;
    /// How many `analyzeAllUncertain` would ask about: all of these but what the user has labelled.
    [[nodiscard]] std::int64_t batchCount() const;

    /// Starts a scan, unless one runs. The previous result stays until the new one replaces it.
    void scan();
    /// Gives up the running scan. Its walk goes on to its end, and the result is dropped.
    void cancelScan();

    void setLevel(SafetyLevel level, std::string_view id);
    void resetVerdict(std::string_view id);

    /// Asks the model about one finding, which is in `analyzing` from here to the end. `note` is what the
    /// user knows about it, or empty. The answer counts only if the finding's verdict is then still the one
    /// that it had when this was called.
    QCoro::Task<> analyze(std::string id, std::string note);
    /// Asks about every uncertain finding that the user has not labelled, one after the other, and ends when
    /// the model is gone. Failures are told once, at the end. Takes the place of a batch that runs; what that
    /// one has still to say is not heard.
    void analyzeAllUncertain();
    /// Ends that after the finding that is being asked about.
    void cancelBatch();

    /// Cleans one after the other, and applies the results of as many together as go in a moment; what is
    /// being cleaned already is passed over. Asks nothing: whoever calls has asked the user.
    QCoro::Task<> clean(std::vector<std::string> ids, CleanMode mode);

    /// Whether a `clean` is under way: something is being cleaned, or is about to be.
    [[nodiscard]] bool isCleaning() const { return cleans_ > 0 || empties_ > 0; }

    /// For a window that is to close: the item that is being removed is finished, and nothing is cleaned
    /// after it. `alert` then says what was left and why, if anything was.
    void stopCleaning();
    /// Empties it at once while it holds nothing but what was put there from here since the start; otherwise,
    /// and where that cannot be told, asks by `trashQuestion`.
    QCoro::Task<> emptyTrash();
    /// The answer to a question, if that is still the one that is asked. What has come into the Trash since
    /// then is not touched, and asked about in its turn.
    QCoro::Task<> emptyTrashAsAsked(QUuid question);
    void dismissTrashQuestion();

    /// Does what the row of `findingActions` with this name says; nothing when there is none. Tells when it
    /// fails.
    QCoro::Task<> perform(std::string_view action, const Finding& finding);
    QCoro::Task<> reveal(const Finding& finding) { return perform("reveal", finding); }
    void openFullDiskAccessSettings();
    void dismissAlert();

    /// Asks everything that runs to stop, and says whether it has within this time: for the end of the
    /// program. Afterwards the object is only good for `finishLasting` and for being destroyed.
    [[nodiscard]] bool finish(std::chrono::milliseconds time);

    /// Waits, for as long as it takes, until labels are written and the item that is being removed is gone: a
    /// program that ends before has lost the one and leaves half of the other. For after `finish`.
    void finishLasting();

signals:
    void phaseChanged();
    /// After any change of the list or of a finding in it.
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
    /// No `clean` is under way any more; what there is to say about it is in `alert`.
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
    /// What a question about the status, by its number, has brought.
    void learnStatus(std::uint64_t question, AIStatus status);
    void askStatusAgainLater();
    void refreshDisk() { assign(disk_, services_.diskInfo(), &AppModel::diskChanged); }

    /// The finding with this id, if that is its current verdict.
    [[nodiscard]] FindingPointer withVerdict(std::string_view id, const Verdict& verdict) const;
    /// Whether it was answered in time.
    QCoro::Task<bool> refreshStatus();
    QCoro::Task<Asked> ask(std::string id, std::string note);
    QCoro::Task<Asked> askAbout(FindingPointer chosen, std::string note);
    QCoro::Task<> runForLabels(Workers& workers, std::function<void()> job);
    /// Lays those that came from the disk meanwhile over what is shown.
    void showLabels();
    /// Shows how far it is, until the timer is stopped.
    void watch(const std::shared_ptr<Scan>& scan, QTimer& poller);
    QCoro::Task<> runScan(std::shared_ptr<Scan> scan);
    /// What the scan has found, without what was cleaned while it ran. Nothing when it is given up, and when
    /// it runs anew because a size cannot be told.
    QCoro::Task<std::optional<MutableFindings>> withoutCleaned(std::shared_ptr<Scan> scan,
                                                               MutableFindings found);
    QCoro::Task<> runBatch(std::shared_ptr<Batch> batch, std::vector<std::string> ids);
    void tellBatch(const Batch& batch);
    /// Those that can be cleaned, in this order, each with the applications that run and use its files.
    QCoro::Task<std::vector<Cleaning>> readyToClean(std::vector<std::string> ids);
    [[nodiscard]] std::vector<Cleaning> cleanable(std::span<const std::string> ids) const;
    QCoro::Task<> cleanInTurn(std::vector<std::string> ids, CleanMode mode);
    /// Fills in the results, as far as it comes in a moment.
    QCoro::Task<> cleanTogether(std::vector<Cleaning>& turns, CleanMode mode);
    void markCleaning(const std::vector<Cleaning>& turns, bool isCleaning);
    void applyCleaned(const std::vector<Cleaning>& turns, CleanMode mode);
    void applyFailed(const Cleaning& turn);
    /// For the scan that runs, or in `late` for one that has ended since the turn was chosen.
    void noteCleaned(const Cleaning& turn, CleanMode mode, CleanedPaths& late);
    /// Whether the list, which a scan has made meanwhile, holds more of what was cleaned than the very
    /// findings that are gone: only another scan can tell the sizes.
    [[nodiscard]] bool isOutdated(const CleanedPaths& late, const std::vector<Cleaning>& turns) const;
    /// Whether something has come into the Trash meanwhile.
    QCoro::Task<bool> emptyWhatWasSeen(std::shared_ptr<const Cleaner::TrashContents> seen);
    /// Nothing when the program ends meanwhile.
    QCoro::Task<Cleaner::EmptiedTrash> emptySeen(std::shared_ptr<const Cleaner::TrashContents> seen);
    QCoro::Task<bool> emptyAndTell(std::shared_ptr<const Cleaner::TrashContents> seen);
    /// What is left of it, for the total.
    QCoro::Task<> countTrashed();
    void recordTrashed();
    /// Notes what the user wanted cleaned and is there still.
    void leave(const Finding& finding, std::string why);
    /// After `stopCleaning`, when nobody is cleaning any more.
    void tellWhatIsLeft();
    /// With their index, or an empty one where it is not known.
    void replaceFindings(MutableFindings result, Index index);
    /// On a worker: thousands of records take their time.
    template <typename List>
    void freeElsewhere(List list);
    /// Of the findings of a level, or of all.
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

    /// What removes, on a worker, as `Workers::run`: one waits for the other.
    template <typename Function>
    auto oneAtATime(Function function);
    /// Puts a changed copy in the place of a finding and returns it.
    template <typename Change>
    FindingPointer change(Findings::const_iterator place, Change change);
    [[nodiscard]] Findings::const_iterator find(std::string_view id) const;

    AppServices services_;
    std::stop_source stop_;
    bool isEnding_ = false;
    std::shared_ptr<std::mutex> removal_ = std::make_shared<std::mutex>();  ///< held by whoever removes

    Phase phase_ = Phase::idle;
    Findings findings_;
    std::uint64_t lists_ = 0;  ///< that scans have made so far
    Findings removed_;
    // Of these, once they were asked for.
    mutable std::optional<std::map<SafetyLevel, Sums>> sums_;
    mutable std::optional<Index> index_;
    std::optional<DiskInfo> disk_;
    AIStatus aiStatus_;
    std::uint64_t statusQuestions_ = 0;  ///< asked so far
    std::uint64_t statusKnown_ = 0;      ///< the last of them that was answered
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
    int cleans_ = 0;                    ///< calls of `clean` that are under way
    int empties_ = 0;                   ///< the same of emptying the Trash
    std::int64_t cleanedFindings_ = 0;  ///< by these
    std::vector<Left> left_;            ///< by these
    std::int64_t trashedBytes_ = 0;
    std::int64_t freedBytes_ = 0;
    std::vector<platform::TrashedItem> trashed_;  ///< since the start, as far as it may be there still
    std::vector<platform::TrashedItem> unrecordedTrash_;  ///< the last of these
    std::optional<AlertInfo> alert_;
    std::optional<TrashQuestion> trashQuestion_;
    std::unique_ptr<Workers> workers_;  ///< what may be given up when the program ends
    std::unique_ptr<Workers> lasting_;  ///< what must come to its end: writing labels, removing an item
    VerdictStore store_;
    std::shared_ptr<Scan> scan_;
    std::shared_ptr<Batch> batch_;
};

}  // namespace ulvak

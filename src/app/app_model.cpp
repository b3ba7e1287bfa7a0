#include "app/app_model.h"

#include <QThread>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <iterator>
#include <new>
#include <utility>

#include "core/checked_add.h"
#include "core/paths.h"

namespace ulvak {
namespace {

using namespace std::chrono_literals;

constexpr auto pollInterval = 200ms;
constexpr std::string_view diskAccessSettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

using MutableFindings = std::vector<std::shared_ptr<Finding>>;

/// Uncertain, but what the user calls unknown is the user's to call so.
bool isForBatch(const Finding& finding) {
    return isUncertain(finding) && finding.source != VerdictSource::user;
}

/// Each finding in a place of its own, so that the list can be handed on without copying what is in it.
MutableFindings shared(std::vector<Finding> findings) {
    MutableFindings result;
    result.reserve(findings.size());
    for (Finding& finding : findings)
        result.push_back(std::make_shared<Finding>(std::move(finding)));
    return result;
}

/// Nothing when memory runs out, in the scan or behind it.
std::optional<MutableFindings> sharedResult(const decltype(AppServices::scan)& scan, ScanProgress& progress,
                                            const std::stop_token& stop) {
    try {
        auto findings = scan(progress, stop);
        if (!findings)
            return std::nullopt;
        return shared(std::move(*findings));
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace

/// One scan from its start to its end, cancelled or not.
struct AppModel::Scan {
    using Clock = std::chrono::steady_clock;  // the system's may be set meanwhile

    ScanProgress progress;
    Clock::time_point start = Clock::now();
    bool isCancelled = false;
};

struct AppModel::Batch {
    bool isCancelled = false;
};

AppModel::AppModel(AppServices services, std::string verdictsPath, QObject* parent)
    : QObject(parent),
      services_(std::move(services)),
      disk_(services_.diskInfo()),
      aiStatus_{.unavailable = ""},
      workers_(std::make_unique<Workers>()),
      lasting_(std::make_unique<Workers>()),
      store_(std::move(verdictsPath), VerdictStore::systemTime,
             [this](std::function<void()> job) { saveLabels(std::move(job)); }) {
    refreshStatus();
}

AppModel::~AppModel() {
    isEnding_ = true;
    stop_.request_stop();
    cleanStop_.request_stop();
    lasting_.reset();
    workers_.reset();
}

bool AppModel::finish(std::chrono::milliseconds time) {
    expectUiThread();
    isEnding_ = true;
    stop_.request_stop();
    cleanStop_.request_stop();
    const auto start = std::chrono::steady_clock::now();
    const bool hasLastingEnded = lasting_->waitForDone(time);
    const auto taken = std::chrono::steady_clock::now() - start;
    return workers_->waitForDone(
               std::max(time - std::chrono::floor<std::chrono::milliseconds>(taken), 0ms)) &&
           hasLastingEnded;
}

void AppModel::finishLasting() {
    expectUiThread();
    lasting_->waitForDone();
    store_.writeRest();
}

QCoro::Task<> AppModel::saveLabels(std::function<void()> job) {
    auto call = lasting_->run([job = std::move(job)] {
        job();
        return true;
    });
    co_await call;
    store_.adopt();
}

void AppModel::expectUiThread() const {
    if (QThread::currentThread() != thread())
        qFatal("AppModel belongs to the thread of the user interface");
}

Findings AppModel::findings(SafetyLevel level) const {
    expectUiThread();
    Findings result;
    std::ranges::copy_if(findings_, std::back_inserter(result),
                         [&](const FindingPointer& finding) { return finding->level == level; });
    return result;
}

std::int64_t AppModel::total(SafetyLevel level) const {
    expectUiThread();
    std::int64_t sum = 0;
    for (const FindingPointer& finding : findings_) {
        if (finding->level == level)
            addChecked(sum, finding->size);
    }
    return sum;
}

FindingPointer AppModel::finding(std::string_view id) const {
    expectUiThread();
    const auto found =
        std::ranges::find_if(findings_, [&](const FindingPointer& finding) { return finding->id == id; });
    return found == findings_.end() ? nullptr : *found;
}

Findings::iterator AppModel::find(std::string_view id) {
    return std::ranges::find_if(findings_, [&](const FindingPointer& finding) { return finding->id == id; });
}

std::int64_t AppModel::uncertainCount() const {
    expectUiThread();
    return std::ranges::count_if(findings_,
                                 [](const FindingPointer& finding) { return isUncertain(*finding); });
}

std::int64_t AppModel::batchCount() const {
    expectUiThread();
    return std::ranges::count_if(findings_,
                                 [](const FindingPointer& finding) { return isForBatch(*finding); });
}

void AppModel::showAlert(std::string title, std::string message) {
    alert_ = AlertInfo{.id = QUuid::createUuid(), .title = std::move(title), .message = std::move(message)};
    emit alertChanged();
}

void AppModel::dismissAlert() {
    expectUiThread();
    assign(alert_, std::nullopt, &AppModel::alertChanged);
}

QCoro::Task<> AppModel::refreshStatus() {
    auto call = workers_->run([ask = services_.aiStatus, stop = stop_.get_token()] { return ask(stop); });
    AIStatus status = co_await call;
    if (!isEnding_)
        setStatus(std::move(status));
}

void AppModel::setStatus(AIStatus status) {
    // Two statuses are equal whatever the user can do about them; that is shown too.
    if (aiStatus_ == status && aiStatus_.hint == status.hint)
        return;
    aiStatus_ = std::move(status);
    emit aiStatusChanged();
}

void AppModel::scan() {
    expectUiThread();
    if (phase_ == Phase::scanning)
        return;
    if (scan_)
        scan_->isCancelled = true;
    // Before anybody hears of it: whoever does may cancel this scan at once, and must not hit the one before.
    const auto scan = std::make_shared<Scan>();
    scan_ = scan;
    assign(phase_, Phase::scanning, &AppModel::phaseChanged);
    runScan(scan);
}

void AppModel::copyCounters(const ScanProgress& progress) {
    assign(scannedFiles_, progress.files(), &AppModel::scannedFilesChanged);
    assign(scannedBytes_, progress.bytes(), &AppModel::scannedBytesChanged);
    assign(deniedCount_, progress.denied(), &AppModel::deniedCountChanged);
}

template <typename List>
void AppModel::freeElsewhere(List list) {
    workers_->post([list = std::make_shared<List>(std::move(list))]() mutable { list.reset(); });
}

QCoro::Task<> AppModel::runScan(std::shared_ptr<Scan> scan) {
    QTimer poller;
    // A pause after each look, not a beat: after a turn that was held up, two looks must not follow each
    // other closely.
    poller.setSingleShot(true);
    poller.setTimerType(Qt::PreciseTimer);
    const auto poll = [this, scan, &poller] {
        copyCounters(scan->progress);
        assign(currentPath_, Paths::display(scan->progress.current()), &AppModel::currentPathChanged);
        poller.start(pollInterval);
    };
    connect(&poller, &QTimer::timeout, this, poll);
    poll();  // at once: the counters begin anew

    // What the result is shown with is asked for on the worker too: a model's server may take its time.
    struct Outcome {
        std::optional<MutableFindings> findings;  ///< absent when memory ran out
        std::chrono::duration<double> duration{};
        AIStatus status;
    };
    auto walk =
        workers_->run([scan, run = services_.scan, ask = services_.aiStatus, stop = stop_.get_token()] {
            Outcome outcome{.findings = sharedResult(run, scan->progress, stop)};
            outcome.duration = Scan::Clock::now() - scan->start;
            outcome.status = ask(stop);
            return outcome;
        });
    Outcome outcome = co_await walk;
    if (isEnding_)
        co_return;
    poller.stop();
    if (scan->isCancelled) {
        freeElsewhere(std::move(outcome.findings));
        co_return;
    }
    if (!outcome.findings) {
        assign(phase_, findings_.empty() ? Phase::idle : Phase::done, &AppModel::phaseChanged);
        showAlert("Tarama tamamlanamadı",
                  "Bellek yetmedi. Açık uygulamalardan bazılarını kapatıp yeniden dene.");
        co_return;
    }

    replaceFindings(std::move(*outcome.findings));
    copyCounters(scan->progress);
    assign(scanDuration_, outcome.duration.count(), &AppModel::scanDurationChanged);
    refreshDisk();
    setStatus(std::move(outcome.status));
    assign(phase_, Phase::done, &AppModel::phaseChanged);
}

void AppModel::replaceFindings(std::vector<std::shared_ptr<Finding>> result) {
    Findings findings;
    findings.reserve(result.size());
    for (auto& finding : result) {
        store_.apply(*finding);
        findings.push_back(std::move(finding));
    }
    findings_.swap(findings);
    emit findingsChanged();
    freeElsewhere(std::move(findings));
}

void AppModel::cancelScan() {
    expectUiThread();
    if (scan_)
        scan_->isCancelled = true;
    assign(phase_, findings_.empty() ? Phase::idle : Phase::done, &AppModel::phaseChanged);
}

template <typename Function>
auto AppModel::oneAtATime(Function function) {
    return lasting_->run([function = std::move(function), turn = removal_,
                          stop = cleanStop_.get_token()]() -> std::invoke_result_t<Function&> {
        const std::scoped_lock lock(*turn);
        // What has not begun when the program ends must not begin.
        if (stop.stop_requested())
            return std::unexpected(CleanError{CleanError::Failed{.message = "Kapatılırken durduruldu."}});
        return function();
    });
}

template <typename Change>
FindingPointer AppModel::change(FindingPointer& place, Change change) {
    const auto changed = std::make_shared<Finding>(*place);
    change(*changed);
    place = changed;
    emit findingsChanged();
    return changed;
}

void AppModel::setLevel(SafetyLevel level, std::string_view id) {
    expectUiThread();
    const auto place = find(id);
    if (place == findings_.end())
        return;
    const FindingPointer finding = change(*place, [&](Finding& changed) { relabel(changed, level); });
    store_.save(currentVerdict(*finding), *finding);
}

void AppModel::resetVerdict(std::string_view id) {
    expectUiThread();
    const auto place = find(id);
    if (place == findings_.end())
        return;
    const FindingPointer finding = change(*place, [](Finding& changed) { ulvak::resetVerdict(changed); });
    store_.remove(finding->id);
}

FindingPointer AppModel::withVerdict(std::string_view id, const Verdict& verdict) const {
    FindingPointer now = finding(id);
    return now && currentVerdict(*now) == verdict ? now : nullptr;
}

QCoro::Task<> AppModel::analyze(std::string id, std::string note) {
    expectUiThread();
    const FindingPointer chosen = finding(id);
    co_await refreshStatus();
    if (isEnding_ || !aiStatus_.isAvailable())
        co_return;
    // Whoever has judged it meanwhile, the user or a scan, is not asked again.
    const FindingPointer asked = chosen ? withVerdict(id, currentVerdict(*chosen)) : nullptr;
    if (!asked || analyzing_.contains(id))
        co_return;
    analyzing_.insert(id);
    emit analyzingChanged();

    auto request =
        workers_->run([asked, note = std::move(note), services = services_, stop = stop_.get_token()] {
            return services.classify(*asked, note, services.runningApplications(), stop);
        });
    const AIClassifier::Result answer = co_await request;
    if (isEnding_)
        co_return;
    if (!answer) {
        showAlert("Analiz başarısız", answer.error().description());
    } else if (withVerdict(id, currentVerdict(*asked))) {
        const FindingPointer judged =
            change(*find(id), [&](Finding& changed) { setCurrentVerdict(changed, *answer); });
        store_.save(*answer, *judged);
    }
    analyzing_.erase(id);
    emit analyzingChanged();
}

void AppModel::analyzeAllUncertain() {
    expectUiThread();
    std::vector<std::string> ids;
    for (const FindingPointer& finding : findings_) {
        if (isForBatch(*finding))
            ids.push_back(finding->id);
    }
    if (ids.empty())
        return;
    if (batch_)
        batch_->isCancelled = true;
    const auto batch = std::make_shared<Batch>();
    batch_ = batch;
    assign(batchProgress_, BatchProgress{.total = std::ssize(ids)}, &AppModel::batchProgressChanged);
    runBatch(batch, std::move(ids));
}

QCoro::Task<> AppModel::runBatch(std::shared_ptr<Batch> batch, std::vector<std::string> ids) {
    BatchProgress progress{.total = std::ssize(ids)};
    for (const std::string& id : ids) {
        if (batch->isCancelled)
            break;
        // Its turn comes late: the user may have labelled it by then, or a scan have told what it is.
        if (const FindingPointer next = finding(id); next && isForBatch(*next))
            co_await analyze(id, {});
        if (isEnding_)
            co_return;
        ++progress.done;
        // A batch that was given up has no say in what is shown: another may have begun.
        if (!batch->isCancelled)
            assign(batchProgress_, progress, &AppModel::batchProgressChanged);
    }
    if (!batch->isCancelled)
        assign(batchProgress_, std::nullopt, &AppModel::batchProgressChanged);
}

void AppModel::cancelBatch() {
    expectUiThread();
    if (batch_)
        batch_->isCancelled = true;
    assign(batchProgress_, std::nullopt, &AppModel::batchProgressChanged);
}

QCoro::Task<> AppModel::clean(std::vector<std::string> ids, CleanMode mode) {
    expectUiThread();
    if (cleans_++ == 0)
        cleanedFindings_ = 0;
    co_await cleanInTurn(std::move(ids), mode);
    if (isEnding_)
        co_return;
    recordTrashed();
    refreshDisk();
    if (--cleans_ > 0)
        co_return;
    tellWhatIsLeft();
    emit cleaningEnded();
}

QCoro::Task<> AppModel::cleanInTurn(std::vector<std::string> ids, CleanMode mode) {
    for (const std::string& id : ids) {
        const FindingPointer found = co_await readyToClean(id);
        if (isEnding_)
            co_return;
        // Another click may have come first while the applications were looked at.
        if (!found || cleaning_.contains(id))
            continue;
        if (cleanStop_.stop_requested()) {
            leave(*found, "");
            continue;
        }
        cleaning_.insert(id);
        emit cleaningChanged();
        co_await cleanOne(found, mode);
        if (isEnding_)
            co_return;
        cleaning_.erase(id);
        emit cleaningChanged();
    }
}

void AppModel::stopCleaning() {
    expectUiThread();
    cleanStop_.request_stop();
}

void AppModel::leave(const Finding& finding, std::string why) {
    left_.push_back({.title = finding.title, .why = std::move(why)});
}

void AppModel::tellWhatIsLeft() {
    constexpr std::size_t mostNamed = 5;
    const std::vector<Left> all = std::exchange(left_, {});
    if (all.empty() || !cleanStop_.stop_requested())
        return;
    const std::string total = std::to_string(cleanedFindings_ + std::ssize(all));
    std::string message =
        cleanedFindings_ == 0
            ? total + " öğeden hiçbiri tümüyle temizlenmedi:"
            : total + " öğeden yalnız " + std::to_string(cleanedFindings_) + " tanesi temizlendi. Kalanlar:";
    for (const Left& left : std::span(all).first(std::min(all.size(), mostNamed)))
        message += "\n• " + left.title + ": " + (left.why.empty() ? "dokunulmadı." : left.why);
    if (all.size() > mostNamed)
        message += "\n• ve " + std::to_string(all.size() - mostNamed) + " öğe daha";
    showAlert("Temizlik durduruldu", std::move(message));
}

QCoro::Task<FindingPointer> AppModel::readyToClean(std::string id) {
    FindingPointer found = finding(id);
    while (found && canBeCleaned(*found) && !found->quitApps.empty()) {
        auto look = workers_->run(
            [found, runningApps = services_.runningApps] { return runningApps(found->quitApps); });
        const std::vector<std::string> running = co_await look;
        if (isEnding_)
            co_return FindingPointer();
        FindingPointer now = finding(id);
        if (now && !running.empty()) {
            const std::string why = errorDescription(CleanError{CleanError::AppsRunning{.names = running}}) +
                                    ". Açıkken dosyaları kullanmaya devam edebilirler.";
            leave(*now, why);
            showAlert(now->title + " temizlenemedi", why);
            co_return FindingPointer();
        }
        // A scan that has ended meanwhile may name other applications.
        const bool isAnswered = now && now->quitApps == found->quitApps;
        found = std::move(now);
        if (isAnswered)
            break;
    }
    co_return found&& canBeCleaned(*found) ? found : nullptr;
}

QCoro::Task<> AppModel::cleanOne(FindingPointer finding, CleanMode mode) {
    const auto run = std::make_shared<CleanRun>(CleanRun{.stop = cleanStop_.get_token()});
    const auto isBegun = std::make_shared<std::atomic<bool>>(false);
    auto work = oneAtATime([finding, mode, run, isBegun, clean = services_.clean] {
        *isBegun = true;
        return clean(*finding, mode, *run);
    });
    const std::expected<std::int64_t, CleanFailure> freed = co_await work;
    if (isEnding_)
        co_return;
    for (auto* list : {&trashed_, &unrecordedTrash_})
        list->insert(list->end(), run->trashed.begin(), run->trashed.end());
    if (!freed) {
        const std::string why = *isBegun ? errorDescription(freed.error()) : "";
        leave(*finding, why);
        if (!cleanStop_.stop_requested())
            showAlert(finding->title + " temizlenemedi", why);
        co_return;
    }
    ++cleanedFindings_;
    removeFindings(finding->id);
    const bool isInTrash =
        mode == CleanMode::trash && std::holds_alternative<CleanAction::Trash>(finding->action.value);
    std::int64_t sum = isInTrash ? trashedBytes_ : freedBytes_;
    addChecked(sum, *freed);
    if (isInTrash)
        assign(trashedBytes_, sum, &AppModel::trashedBytesChanged);
    else
        assign(freedBytes_, sum, &AppModel::freedBytesChanged);
}

void AppModel::removeFindings(std::string_view id) {
    if (std::erase_if(findings_, [&](const FindingPointer& finding) { return finding->id == id; }) > 0)
        emit findingsChanged();
}

void AppModel::recordTrashed() {
    if (unrecordedTrash_.empty())
        return;
    workers_->post(
        [record = services_.recordTrashed, items = std::exchange(unrecordedTrash_, {})] { record(items); });
}

QCoro::Task<> AppModel::emptyTrash() {
    expectUiThread();
    dismissTrashQuestion();
    for (bool hasMore = true; hasMore;) {
        auto look = workers_->run([contents = services_.trashContents, fromHere = trashed_] {
            return std::make_shared<const Cleaner::TrashContents>(contents(fromHere));
        });
        const std::shared_ptr<const Cleaner::TrashContents> contents = co_await look;
        if (isEnding_)
            co_return;
        if (!contents->isAllFromHere()) {
            assign(trashQuestion_, TrashQuestion{.id = QUuid::createUuid(), .contents = contents},
                   &AppModel::trashQuestionChanged);
            co_return;
        }
        hasMore = co_await emptyWhatWasSeen(contents);
    }
}

QCoro::Task<> AppModel::emptyTrashAsAsked(QUuid question) {
    expectUiThread();
    if (!trashQuestion_ || trashQuestion_->id != question)
        co_return;
    const auto contents = trashQuestion_->contents;
    dismissTrashQuestion();
    const bool hasMore = co_await emptyWhatWasSeen(contents);
    if (hasMore)
        co_await emptyTrash();
}

void AppModel::dismissTrashQuestion() {
    expectUiThread();
    assign(trashQuestion_, std::nullopt, &AppModel::trashQuestionChanged);
}

QCoro::Task<bool> AppModel::emptyWhatWasSeen(std::shared_ptr<const Cleaner::TrashContents> seen) {
    ++empties_;
    const bool hasMore = co_await emptyAndTell(std::move(seen));
    if (isEnding_)
        co_return false;
    --empties_;
    emit cleaningEnded();
    co_return hasMore && !cleanStop_.stop_requested();
}

QCoro::Task<bool> AppModel::emptyAndTell(std::shared_ptr<const Cleaner::TrashContents> seen) {
    using Emptied = std::expected<Cleaner::EmptiedTrash, CleanFailure>;
    auto work = oneAtATime([seen, empty = services_.emptyTrash, stop = cleanStop_.get_token()]() -> Emptied {
        return empty(*seen, stop);
    });
    Emptied direct = co_await work;
    if (isEnding_)
        co_return false;
    Cleaner::EmptiedTrash emptied =
        direct ? std::move(*direct) : Cleaner::EmptiedTrash{.failure = std::move(direct.error())};
    if (cleanStop_.stop_requested()) {
        if (emptied.itemsLeft > 0 && !emptied.failure)
            emptied.failure = CleanError{CleanError::Failed{"Çöp kutusunun boşaltılması durduruldu."}};
    } else if (!emptied.isDone() && emptied.mayAskDesktop) {
        // Not in turn with what removes: nobody knows how long the desktop takes.
        auto call = workers_->run([seen, ask = services_.emptyTrashByDesktop, stop = stop_.get_token()] {
            return ask(*seen, stop);
        });
        Cleaner::EmptiedTrash rest = co_await call;
        if (isEnding_)
            co_return false;
        addChecked(rest.bytes, emptied.bytes);
        // Not asked after all, because something has come: then the first failure is why.
        if (rest.itemsLeft > 0 && !rest.failure)
            rest.failure = std::move(emptied.failure);
        emptied = std::move(rest);
    }
    std::int64_t sum = freedBytes_;
    addChecked(sum, emptied.bytes);
    assign(freedBytes_, sum, &AppModel::freedBytesChanged);
    if (emptied.isDone() && emptied.itemsNew == 0) {
        trashed_.clear();
        assign(trashedBytes_, 0, &AppModel::trashedBytesChanged);
        removeFindings(Paths::trash());
    } else {
        co_await countTrashed();
        if (isEnding_)
            co_return false;
    }
    if (emptied.failure) {
        std::string message = errorDescription(*emptied.failure);
        if (emptied.itemsLeft > 1)
            message += "\nÇöp kutusunda " + std::to_string(emptied.itemsLeft) + " öğe kaldı.";
        showAlert("Çöp kutusu boşaltılamadı", std::move(message));
    }
    refreshDisk();
    co_return emptied.isDone() && emptied.itemsNew > 0;
}

QCoro::Task<> AppModel::countTrashed() {
    auto look = workers_->run([contents = services_.trashContents, fromHere = trashed_] {
        return contents(fromHere).bytesFromHere;
    });
    const std::int64_t bytes = co_await look;
    if (!isEnding_)
        assign(trashedBytes_, std::min(trashedBytes_, bytes), &AppModel::trashedBytesChanged);
}

QCoro::Task<> AppModel::reveal(const Finding& finding) {
    expectUiThread();
    const std::vector<std::string> urls = finding.urls;  // the finding may go while the desktop is asked
    auto work = workers_->run([reveal = services_.reveal, urls] { return reveal(urls); });
    const bool isShown = co_await work;
    if (!isShown && !isEnding_)
        showAlert("Klasör açılamadı",
                  "“" + Paths::display(urls.front()) +
                      "” gösterilemedi: klasörleri açacak bir dosya yöneticisi bulunamadı.");
}

void AppModel::openFullDiskAccessSettings() {
    expectUiThread();
    workers_->post([open = services_.openUrl] { open(diskAccessSettings); });
}

}  // namespace ulvak

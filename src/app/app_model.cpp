#include "app/app_model.h"

#include <QThread>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <expected>
#include <functional>
#include <iterator>
#include <new>
#include <ranges>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/finding_action.h"
#include "core/checked_add.h"
#include "core/paths.h"

namespace ulvak {
namespace {

using namespace std::chrono_literals;

constexpr auto pollInterval = 200ms;
/// Findings cleaned before results are applied: at most this many, and for about this long.
constexpr std::size_t maxTogether = 64;
constexpr auto moment = 400ms;
constexpr std::string_view diskAccessSettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

using Clock = std::chrono::steady_clock;  // the system clock may be set meanwhile

/// Uncertain, unless the user chose "unknown".
bool isForBatch(const Finding& finding) {
    return isUncertain(finding) && finding.source != VerdictSource::user;
}

bool goesToTrash(const Finding& finding, CleanMode mode) {
    return mode == CleanMode::trash && std::holds_alternative<CleanAction::Trash>(finding.action.value);
}

/// Allocates each finding separately, so that the list can be passed on without copying its contents.
MutableFindings shared(std::vector<Finding> findings) {
    MutableFindings result;
    result.reserve(findings.size());
    for (Finding& finding : findings)
        result.push_back(std::make_shared<Finding>(std::move(finding)));
    return result;
}

/// Names that findings list of what uses their files.
struct Users {
    std::set<std::string> apps;
    std::set<std::string> processes;

    [[nodiscard]] bool isEmpty() const { return apps.empty() && processes.empty(); }

    void add(const Users& others) {
        apps.insert(others.apps.begin(), others.apps.end());
        processes.insert(others.processes.begin(), others.processes.end());
    }

    void add(const Finding& finding) {
        apps.insert(finding.quitApps.begin(), finding.quitApps.end());
        processes.insert(finding.processes.begin(), finding.processes.end());
    }

    void remove(const Users& others) {
        std::erase_if(apps, [&](const std::string& name) { return others.apps.contains(name); });
        std::erase_if(processes, [&](const std::string& name) { return others.processes.contains(name); });
    }

    /// Those of these that use a finding's files, as the user is told.
    [[nodiscard]] std::vector<std::string> of(const Finding& finding) const {
        std::vector<std::string> names;
        std::ranges::copy_if(finding.quitApps, std::back_inserter(names),
                             [&](const std::string& name) { return apps.contains(name); });
        for (const std::string& process : finding.processes) {
            std::string name = nameToQuit(finding, process);
            if (processes.contains(process) && std::ranges::find(names, name) == names.end())
                names.push_back(std::move(name));
        }
        return names;
    }
};

/// Those of the names that are running.
std::set<std::string> runningOf(
    const std::set<std::string>& names,
    const std::function<AppServices::Names(std::span<const std::string>)>& among) {
    if (names.empty())
        return {};
    const AppServices::Names running = among(AppServices::Names(names.begin(), names.end()));
    return {running.begin(), running.end()};
}

using Index = std::unordered_map<std::string_view, FindingPointer>;

template <typename List>
Index indexOf(const List& findings) {
    Index index;
    index.reserve(findings.size());
    for (const auto& finding : findings)
        index.try_emplace(finding->id, finding);
    return index;
}

struct Walked {
    std::optional<MutableFindings> findings;  ///< absent if memory ran out, during or after the scan
    Index index;  ///< of `findings`; built here because thousands of ids take time
};

Walked walked(const decltype(AppServices::scan)& scan, ScanProgress& progress, const std::stop_token& stop) {
    try {
        auto findings = scan(progress, stop);
        if (!findings)
            return {};
        MutableFindings result = shared(std::move(*findings));
        Index index = indexOf(result);
        return {.findings = std::move(result), .index = std::move(index)};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

/// One scan, finished or cancelled.
struct AppModel::Scan {
    ScanProgress progress;
    Clock::time_point start = Clock::now();
    bool isCancelled = false;
    CleanedPaths cleaned;  ///< while the scan ran
};

/// The outcome of asking the model about a finding.
struct AppModel::Asked {
    enum class End : std::uint8_t { passedOver, noModel, answered, failed };
    End end = End::passedOver;
    std::string why;        ///< why it failed
    bool isSilent = false;  ///< the status or the request timed out
};

struct AppModel::Batch {
    bool isCancelled = false;
    bool isModelGone = false;
    std::int64_t answered = 0;
    std::int64_t failed = 0;
    std::int64_t left = 0;  ///< not yet asked when the model became unavailable
    std::vector<std::pair<std::string, std::int64_t>> reasons;  ///< each with its number of failures

    /// `leftBefore` counts those not yet asked, including this one.
    void add(const Asked& asked, std::int64_t leftBefore) {
        if (asked.end == Asked::End::answered)
            ++answered;
        if (asked.end == Asked::End::failed)
            addFailure(asked.why);
        // The next request would get no answer either.
        isModelGone = asked.end == Asked::End::noModel || asked.isSilent;
        if (isModelGone)
            left = leftBefore - (asked.end == Asked::End::failed ? 1 : 0);
    }

private:
    void addFailure(const std::string& why) {
        ++failed;
        const auto known = std::ranges::find(reasons, why, &std::pair<std::string, std::int64_t>::first);
        if (known == reasons.end())
            reasons.emplace_back(why, 1);
        else
            ++known->second;
    }
};

struct AppModel::CleanResult {
    std::expected<std::int64_t, CleanFailure> freed;
    std::size_t done = 0;  ///< items removed, even if it failed later
    std::vector<platform::TrashedItem> trashed;
};

/// A finding about to be cleaned.
struct AppModel::Cleaning {
    FindingPointer finding;
    std::uint64_t list = 0;                  ///< it was chosen from this list
    std::vector<std::string> running = {};   ///< what runs and uses its files, as the user is told
    std::optional<CleanResult> result = {};  ///< absent if it was not started

    [[nodiscard]] bool isWaiting() const { return running.empty() && !result; }
};

AppModel::AppModel(AppServices services, std::string verdictsPath, QObject* parent)
    : QObject(parent),
      services_(std::move(services)),
      disk_(services_.diskInfo()),
      aiStatus_{.unavailable = ""},
      workers_(std::make_unique<Workers>()),
      lasting_(std::make_unique<Workers>()),
      store_(
          std::move(verdictsPath), services_.folders, VerdictStore::systemTime,
          [this](std::function<void()> job) { runForLabels(*lasting_, std::move(job)); },
          [this](std::function<void()> job) { runForLabels(*workers_, std::move(job)); }) {
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

QCoro::Task<> AppModel::runForLabels(Workers& workers, std::function<void()> job) {
    auto call = workers.run([job = std::move(job)] {
        job();
        return true;
    });
    co_await call;
    if (store_.adopt() && !isEnding_)
        showLabels();
}

void AppModel::showLabels() {
    bool isChanged = false;
    for (FindingPointer& shown : findings_) {
        if (!store_.entries().contains(shown->id))
            continue;
        const auto finding = std::make_shared<Finding>(*shown);
        store_.apply(*finding);
        if (currentVerdict(*finding) == currentVerdict(*shown))
            continue;
        shown = finding;
        isChanged = true;
    }
    if (!isChanged)
        return;
    sums_.reset();
    index_.reset();
    removed_.clear();
    emit findingsChanged();
}

void AppModel::expectUiThread() const {
    if (QThread::currentThread() != thread())
        qFatal("AppModel belongs to the UI thread");
}

Findings AppModel::findings(SafetyLevel level) const {
    expectUiThread();
    Findings result;
    std::ranges::copy_if(findings_, std::back_inserter(result),
                         [&](const FindingPointer& finding) { return finding->level == level; });
    return result;
}

void AppModel::Sums::add(const Finding& finding, std::int64_t sign) {
    addChecked(bytes, sign * finding.size);
    count += sign;
    guesses += finding.source == VerdictSource::heuristic ? sign : 0;
    uncertain += isUncertain(finding) ? sign : 0;
    forBatch += isForBatch(finding) ? sign : 0;
}

AppModel::Sums AppModel::sums(SafetyLevel level) const {
    expectUiThread();
    if (!sums_) {
        sums_.emplace();
        for (const FindingPointer& finding : findings_)
            (*sums_)[finding->level].add(*finding, 1);
    }
    const auto sum = sums_->find(level);
    return sum == sums_->end() ? Sums() : sum->second;
}

std::int64_t AppModel::sumOfAll(std::int64_t Sums::* field) const {
    std::int64_t sum = 0;
    for (const SafetyLevel level : allSafetyLevels)
        sum += sums(level).*field;
    return sum;
}

AppModel::Index& AppModel::index() const {
    if (!index_)
        index_ = indexOf(findings_);
    return *index_;
}

Findings::const_iterator AppModel::find(std::string_view id) const {
    const auto known = index().find(id);
    return known == index().end() ? findings_.end() : std::ranges::find(findings_, known->second);
}

FindingPointer AppModel::finding(std::string_view id) const {
    expectUiThread();
    const auto known = index().find(id);
    return known == index().end() ? nullptr : known->second;
}

std::int64_t AppModel::uncertainCount() const {
    return sumOfAll(&Sums::uncertain);
}

std::int64_t AppModel::batchCount() const {
    return sumOfAll(&Sums::forBatch);
}

void AppModel::showAlert(std::string title, std::string message) {
    alert_ = AlertInfo{.id = QUuid::createUuid(), .title = std::move(title), .message = std::move(message)};
    emit alertChanged();
}

void AppModel::dismissAlert() {
    expectUiThread();
    assign(alert_, std::nullopt, &AppModel::alertChanged);
}

QCoro::Task<bool> AppModel::refreshStatus() {
    const std::uint64_t question = ++statusQuestions_;
    auto call = workers_->run([ask = services_.aiStatus, stop = stop_.get_token()] { return ask(stop); });
    AIStatus status = co_await call;
    const bool isAnswered = !status.isSilent;
    if (!isEnding_)
        learnStatus(question, std::move(status));
    co_return isAnswered;
}

void AppModel::learnStatus(std::uint64_t question, AIStatus status) {
    if (question < statusKnown_)
        return;  // a later query has been answered already
    if (status.isSilent) {
        if (aiStatus_.isAvailable())
            return;
        askStatusAgainLater();
    } else {
        statusKnown_ = question;
    }
    setStatus(std::move(status));
}

void AppModel::askStatusAgainLater() {
    if (std::exchange(willAskStatus_, true))
        return;
    QTimer::singleShot(services_.statusPause, this, [this] {
        willAskStatus_ = false;
        if (!isEnding_ && aiStatus_.isSilent)
            refreshStatus();
    });
}

void AppModel::setStatus(AIStatus status) {
    // Equality ignores the hint, which is shown too.
    const bool isShown = aiStatus_ == status && aiStatus_.hint == status.hint;
    aiStatus_ = std::move(status);
    if (!isShown)
        emit aiStatusChanged();
}

void AppModel::scan() {
    expectUiThread();
    if (phase_ == Phase::scanning)
        return;
    if (scan_)
        scan_->isCancelled = true;
    // Set before any signal: a listener may cancel at once and must hit this scan, not the previous one.
    const auto scan = std::make_shared<Scan>();
    scan_ = scan;
    assign(phase_, Phase::scanning, &AppModel::phaseChanged);
    runScan(scan);
}

void AppModel::copyCounters(const ScanProgress& progress) {
    assign(scannedFiles_, progress.files(), &AppModel::scannedFilesChanged);
    assign(scannedBytes_, progress.bytes(), &AppModel::scannedBytesChanged);
    assign(deniedCount_, progress.denied() - progress.deniedBeyond(), &AppModel::deniedCountChanged);
}

template <typename List>
void AppModel::freeElsewhere(List list) {
    workers_->post([list = std::make_shared<List>(std::move(list))]() mutable { list.reset(); });
}

void AppModel::watch(const std::shared_ptr<Scan>& scan, QTimer& poller) {
    // Single-shot rather than periodic: after a delayed event-loop turn, two polls must not follow in quick
    // succession.
    poller.setSingleShot(true);
    poller.setTimerType(Qt::PreciseTimer);
    const auto poll = [this, scan, &poller] {
        copyCounters(scan->progress);
        assign(currentPath_, Paths::display(scan->progress.current(), folders()),
               &AppModel::currentPathChanged);
        poller.start(pollInterval);
    };
    connect(&poller, &QTimer::timeout, this, poll);
    poll();  // at once: the counters start again from zero
}

QCoro::Task<> AppModel::runScan(std::shared_ptr<Scan> scan) {
    QTimer poller;
    watch(scan, poller);
    auto walk = workers_->run([scan, run = services_.scan, stop = stop_.get_token()] {
        Walked outcome = walked(run, scan->progress, stop);
        const std::chrono::duration<double> duration = Clock::now() - scan->start;
        return std::pair(std::move(outcome), duration);
    });
    auto [outcome, duration] = co_await walk;
    if (isEnding_)
        co_return;
    poller.stop();
    if (scan->isCancelled) {
        freeElsewhere(std::move(outcome));
        co_return;
    }
    if (!outcome.findings) {
        assign(phase_, findings_.empty() ? Phase::idle : Phase::done, &AppModel::phaseChanged);
        showAlert("Tarama tamamlanamadı",
                  "Bellek yetmedi. Açık uygulamalardan bazılarını kapatıp yeniden dene.");
        co_return;
    }
    const std::size_t count = outcome.findings->size();
    auto result = co_await withoutCleaned(scan, std::move(*outcome.findings));
    if (isEnding_)
        co_return;
    if (!result || result->size() != count)
        freeElsewhere(std::exchange(outcome.index, {}));
    if (!result)
        co_return;

    replaceFindings(std::move(*result), std::move(outcome.index));
    copyCounters(scan->progress);
    assign(scanDuration_, duration.count(), &AppModel::scanDurationChanged);
    refreshDisk();
    assign(phase_, Phase::done, &AppModel::phaseChanged);
    // Not awaited: a model's server may be slow.
    refreshStatus();
}

QCoro::Task<std::optional<MutableFindings>> AppModel::withoutCleaned(std::shared_ptr<Scan> scan,
                                                                     MutableFindings found) {
    CleanedPaths::Rest rest{.findings = std::move(found)};
    std::size_t considered = 0;
    // Awaits nothing if nothing was cleaned. More may be cleaned while the disk is checked.
    while (rest.isKnown && considered < scan->cleaned.size()) {
        considered = scan->cleaned.size();
        auto look = workers_->run([cleaned = scan->cleaned, findings = std::move(rest.findings)]() mutable {
            return cleaned.rest(std::move(findings));
        });
        rest = co_await look;
        if (isEnding_)
            co_return std::nullopt;
        if (scan->isCancelled) {
            freeElsewhere(std::move(rest.findings));
            co_return std::nullopt;
        }
    }
    if (rest.isKnown)
        co_return std::move(rest.findings);
    freeElsewhere(std::move(rest.findings));
    scan_ = std::make_shared<Scan>();
    runScan(scan_);
    co_return std::nullopt;
}

void AppModel::replaceFindings(MutableFindings result, Index index) {
    Findings findings;
    findings.reserve(result.size());
    for (auto& finding : result) {
        store_.apply(*finding);
        findings.push_back(std::move(finding));
    }
    findings_.swap(findings);
    ++lists_;
    removed_.clear();
    sums_.reset();
    auto before = std::exchange(
        index_, findings_.empty() || !index.empty() ? std::optional(std::move(index)) : std::nullopt);
    emit findingsChanged();
    freeElsewhere(std::pair(std::move(before), std::move(findings)));
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
        // Nothing may start once the program is closing.
        if (stop.stop_requested())
            return std::unexpected(CleanError{CleanError::Failed{.message = "Kapatılırken durduruldu."}});
        return function();
    });
}

template <typename Change>
FindingPointer AppModel::change(Findings::const_iterator place, Change change) {
    const auto changed = std::make_shared<Finding>(**place);
    change(*changed);
    const FindingPointer before =
        std::exchange(findings_[static_cast<std::size_t>(place - findings_.begin())], changed);
    if (sums_) {
        (*sums_)[before->level].add(*before, -1);
        (*sums_)[changed->level].add(*changed, 1);
    }
    Index& index = this->index();
    if (const auto known = index.find(before->id); known->second == before) {
        index.erase(known);
        index.emplace(changed->id, changed);
    }
    removed_.clear();
    emit findingsChanged();
    return changed;
}

void AppModel::setLevel(SafetyLevel level, std::string_view id) {
    expectUiThread();
    const auto place = find(id);
    if (place == findings_.end())
        return;
    const FindingPointer finding = change(place, [&](Finding& changed) { relabel(changed, level); });
    store_.save(currentVerdict(*finding), *finding);
}

void AppModel::resetVerdict(std::string_view id) {
    expectUiThread();
    const auto place = find(id);
    if (place == findings_.end())
        return;
    const FindingPointer finding = change(place, [](Finding& changed) { ulvak::resetVerdict(changed); });
    store_.remove(finding->id);
}

FindingPointer AppModel::withVerdict(std::string_view id, const Verdict& verdict) const {
    FindingPointer now = finding(id);
    return now && currentVerdict(*now) == verdict ? now : nullptr;
}

QCoro::Task<> AppModel::analyze(std::string id, std::string note) {
    expectUiThread();
    const Asked asked = co_await ask(std::move(id), std::move(note));
    if (!isEnding_ && asked.end == Asked::End::failed)
        showAlert("Analiz başarısız", asked.why);
}

QCoro::Task<AppModel::Asked> AppModel::ask(std::string id, std::string note) {
    const FindingPointer chosen = finding(id);
    if (!chosen || analyzing_.contains(id)) {
        co_await refreshStatus();
        co_return Asked();
    }
    analyzing_.insert(id);
    emit analyzingChanged();
    Asked asked = co_await askAbout(chosen, std::move(note));
    if (isEnding_)
        co_return asked;
    analyzing_.erase(id);
    emit analyzingChanged();
    co_return asked;
}

QCoro::Task<AppModel::Asked> AppModel::askAbout(FindingPointer chosen, std::string note) {
    Asked asked;
    const bool isAnswered = co_await refreshStatus();
    if (isEnding_)
        co_return asked;
    if (!aiStatus_.isAvailable()) {
        asked.end = Asked::End::noModel;
        co_return asked;
    }
    // Skip it if the user or a scan has judged it in the meantime.
    const FindingPointer now = withVerdict(chosen->id, currentVerdict(*chosen));
    if (!now)
        co_return asked;
    auto request =
        workers_->run([now, note = std::move(note), services = services_, stop = stop_.get_token()] {
            return services.classify(*now, note, services.applications(), stop);
        });
    const AIClassifier::Result answer = co_await request;
    if (isEnding_)
        co_return asked;
    if (!answer) {
        asked.end = Asked::End::failed;
        asked.why = answer.error().description();
        const auto* error = std::get_if<platform::ModelError>(&answer.error().value);
        asked.isSilent = !isAnswered && error != nullptr && error->isSilent;
        co_return asked;
    }
    asked.end = Asked::End::answered;
    learnStatus(++statusQuestions_, AIStatus());
    if (withVerdict(now->id, currentVerdict(*now))) {
        const FindingPointer judged =
            change(find(now->id), [&](Finding& changed) { setCurrentVerdict(changed, *answer); });
        store_.save(*answer, *judged);
    }
    co_return asked;
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
        if (batch->isCancelled || batch->isModelGone)
            break;
        // By the time its turn comes, the user may have labelled it or a scan identified it.
        Asked asked;
        if (const FindingPointer next = finding(id); next && isForBatch(*next))
            asked = co_await ask(id, {});
        if (isEnding_)
            co_return;
        batch->add(asked, progress.total - progress.done);
        if (asked.end != Asked::End::noModel)
            ++progress.done;
        // A cancelled batch must not update what is shown: another may have started.
        if (!batch->isCancelled)
            assign(batchProgress_, progress, &AppModel::batchProgressChanged);
    }
    if (!batch->isCancelled)
        assign(batchProgress_, std::nullopt, &AppModel::batchProgressChanged);
    if (batch_ == batch)
        tellBatch(*batch);
}

void AppModel::tellBatch(const Batch& batch) {
    constexpr std::size_t maxNamed = 5;
    const std::int64_t asked = batch.answered + batch.failed;
    // A model that was unavailable from the start shows in its status.
    if (batch.failed == 0 && (!batch.isModelGone || asked == 0))
        return;
    std::string message = "Sorulan " + std::to_string(asked) + " klasörden " +
                          (batch.failed == 0 ? "hepsi analiz edildi."
                                             : std::to_string(batch.failed) + " tanesi analiz edilemedi:");
    for (const auto& [why, count] : std::span(batch.reasons).first(std::min(batch.reasons.size(), maxNamed)))
        message += "\n• " + why + (count > 1 ? " (" + std::to_string(count) + " klasör)" : "");
    if (batch.reasons.size() > maxNamed)
        message += "\n• ve " + std::to_string(batch.reasons.size() - maxNamed) + " neden daha";
    if (batch.isModelGone) {
        message += "\nModel artık yanıt vermiyor";
        if (batch.left > 0)
            message += "; kalan " + std::to_string(batch.left) + " klasör sorulmadı";
        message += ".";
        if (!aiStatus_.hint.empty())
            message += " " + aiStatus_.hint;
    }
    showAlert("Analiz tamamlanamadı", std::move(message));
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
    std::deque<std::string> waiting(ids.begin(), ids.end());
    std::size_t together = 1;
    while (!waiting.empty()) {
        const std::size_t count =
            cleanStop_.stop_requested() ? waiting.size() : std::min(together, waiting.size());
        const auto next = waiting.begin() + static_cast<std::ptrdiff_t>(count);
        std::vector<std::string> chosen(std::move_iterator(waiting.begin()), std::move_iterator(next));
        waiting.erase(waiting.begin(), next);
        std::vector<Cleaning> turns = co_await readyToClean(std::move(chosen));
        if (isEnding_)
            co_return;
        // Another click may have started cleaning them while the applications were checked.
        std::erase_if(turns, [&](const Cleaning& turn) { return cleaning_.contains(turn.finding->id); });
        if (turns.empty()) {
            together = std::min(together * 2, maxTogether);
            continue;
        }
        if (cleanStop_.stop_requested()) {
            for (const Cleaning& turn : turns)
                applyFailed(turn);
            continue;
        }
        const auto start = Clock::now();
        markCleaning(turns, true);
        co_await cleanTogether(turns, mode);
        if (isEnding_)
            co_return;
        applyCleaned(turns, mode);
        markCleaning(turns, false);
        for (Cleaning& turn : std::views::reverse(turns)) {
            if (turn.isWaiting() && !cleanStop_.stop_requested())
                waiting.push_front(turn.finding->id);
        }
        const auto taken = Clock::now() - start;
        if (mode == CleanMode::permanent || taken > moment)
            together = std::max(together / 2, 1UZ);
        else if (taken < moment / 2)
            together = std::min(together * 2, maxTogether);
    }
}

void AppModel::markCleaning(const std::vector<Cleaning>& turns, bool isCleaning) {
    bool isChanged = false;
    for (const Cleaning& turn : turns) {
        if (!turn.running.empty())
            continue;
        isChanged = true;
        if (isCleaning)
            cleaning_.insert(turn.finding->id);
        else
            cleaning_.erase(turn.finding->id);
    }
    if (isChanged)
        emit cleaningChanged();
}

void AppModel::stopCleaning() {
    expectUiThread();
    cleanStop_.request_stop();
}

void AppModel::leave(const Finding& finding, std::string why) {
    left_.push_back({.title = finding.title, .why = std::move(why)});
}

void AppModel::tellWhatIsLeft() {
    constexpr std::size_t maxNamed = 5;
    const std::vector<Left> all = std::exchange(left_, {});
    if (all.empty() || !cleanStop_.stop_requested())
        return;
    const std::string total = std::to_string(cleanedFindings_ + std::ssize(all));
    std::string message =
        cleanedFindings_ == 0
            ? total + " öğeden hiçbiri tümüyle temizlenmedi:"
            : total + " öğeden yalnız " + std::to_string(cleanedFindings_) + " tanesi temizlendi. Kalanlar:";
    for (const Left& left : std::span(all).first(std::min(all.size(), maxNamed)))
        message += "\n• " + left.title + ": " + (left.why.empty() ? "dokunulmadı." : left.why);
    if (all.size() > maxNamed)
        message += "\n• ve " + std::to_string(all.size() - maxNamed) + " öğe daha";
    showAlert("Temizlik durduruldu", std::move(message));
}

std::vector<AppModel::Cleaning> AppModel::cleanable(std::span<const std::string> ids) const {
    std::vector<Cleaning> turns;
    std::unordered_set<std::string_view> taken;
    for (const std::string& id : ids) {
        if (!taken.insert(id).second)
            continue;
        if (FindingPointer finding = this->finding(id); finding && canBeCleaned(*finding))
            turns.push_back({.finding = std::move(finding), .list = lists_});
    }
    return turns;
}

QCoro::Task<std::vector<AppModel::Cleaning>> AppModel::readyToClean(std::vector<std::string> ids) {
    Users asked;
    Users running;
    std::vector<Cleaning> turns = cleanable(ids);
    while (!cleanStop_.stop_requested()) {
        Users next;
        for (const Cleaning& turn : turns)
            next.add(*turn.finding);
        next.remove(asked);
        if (next.isEmpty())
            break;
        asked.add(next);
        auto look = workers_->run([next = std::move(next), services = services_] {
            return Users{.apps = runningOf(next.apps, services.runningAmong),
                         .processes = runningOf(next.processes, services.processesAmong)};
        });
        const Users answer = co_await look;
        if (isEnding_)
            co_return std::vector<Cleaning>();
        running.add(answer);
        // A scan that ended in the meantime may name others.
        turns = cleanable(ids);
    }
    for (Cleaning& turn : turns)
        turn.running = running.of(*turn.finding);
    co_return turns;
}

QCoro::Task<> AppModel::cleanTogether(std::vector<Cleaning>& turns, CleanMode mode) {
    Findings findings;
    for (const Cleaning& turn : turns) {
        if (turn.running.empty())
            findings.push_back(turn.finding);
    }
    if (findings.empty())
        co_return;
    using Results = std::expected<std::vector<CleanResult>, CleanFailure>;
    auto work = oneAtATime([findings, mode, clean = services_.clean, prepare = services_.prepareClean,
                            stop = cleanStop_.get_token()]() -> Results {
        const auto start = Clock::now();
        const auto ahead = prepare(findings, mode);
        std::vector<CleanResult> results;
        for (const FindingPointer& finding : findings) {
            if (!results.empty() && (stop.stop_requested() || Clock::now() - start > moment))
                break;
            CleanRun run{.stop = stop, .ahead = ahead.get()};
            auto freed = clean(*finding, mode, run);
            results.push_back(
                {.freed = std::move(freed), .done = run.done, .trashed = std::move(run.trashed)});
        }
        return results;
    });
    Results results = co_await work;
    if (isEnding_ || !results)
        co_return;
    for (auto turn = turns.begin(); CleanResult & result : *results) {
        turn = std::ranges::find_if(turn, turns.end(), &Cleaning::isWaiting);
        turn->result = std::move(result);
    }
}

void AppModel::applyCleaned(const std::vector<Cleaning>& turns, CleanMode mode) {
    std::unordered_set<std::string_view> gone;
    CleanedPaths late;
    std::int64_t trashed = trashedBytes_;
    std::int64_t freed = freedBytes_;
    for (const Cleaning& turn : turns) {
        if (!turn.result)
            continue;
        for (auto* list : {&trashed_, &unrecordedTrash_})
            list->insert(list->end(), turn.result->trashed.begin(), turn.result->trashed.end());
        noteCleaned(turn, mode, late);
        if (!turn.result->freed)
            continue;
        gone.insert(turn.finding->id);
        addChecked(goesToTrash(*turn.finding, mode) ? trashed : freed, *turn.result->freed);
    }
    cleanedFindings_ += std::ssize(gone);
    const bool mustScan = !cleanStop_.stop_requested() && isOutdated(late, turns);
    removeFindings(gone);
    assign(trashedBytes_, trashed, &AppModel::trashedBytesChanged);
    assign(freedBytes_, freed, &AppModel::freedBytesChanged);
    for (const Cleaning& turn : turns)
        applyFailed(turn);
    if (mustScan)
        scan();
}

void AppModel::applyFailed(const Cleaning& turn) {
    const std::string title = turn.finding->title + " temizlenemedi";
    if (!turn.running.empty()) {
        const std::string why = errorDescription(CleanError{CleanError::AppsRunning{.names = turn.running}}) +
                                ". Açıkken dosyaları kullanmaya devam edebilirler.";
        leave(*turn.finding, why);
        showAlert(title, why);
    } else if (turn.result && !turn.result->freed) {
        const std::string why = errorDescription(turn.result->freed.error(), folders());
        leave(*turn.finding, why);
        if (!cleanStop_.stop_requested())
            showAlert(title, why);
    } else if (turn.isWaiting() && cleanStop_.stop_requested()) {
        leave(*turn.finding, "");
    }
}

void AppModel::noteCleaned(const Cleaning& turn, CleanMode mode, CleanedPaths& late) {
    if (!turn.result || (phase_ != Phase::scanning && turn.list == lists_))
        return;
    CleanedPaths& cleaned = phase_ == Phase::scanning ? scan_->cleaned : late;
    const std::vector<std::string>& urls = turn.finding->urls;
    const std::size_t gone = turn.result->freed ? urls.size() : turn.result->done;
    for (std::size_t index = 0; index < std::min(gone, urls.size()); ++index)
        cleaned.addGone(urls[index]);
    // A failed permanent removal may have removed part of the contents.
    if (gone < urls.size() && !goesToTrash(*turn.finding, mode))
        cleaned.addTouched(urls[gone]);
}

bool AppModel::isOutdated(const CleanedPaths& late, const std::vector<Cleaning>& turns) const {
    const auto isGone = [&](const Finding& finding) {
        return std::ranges::any_of(turns, [&](const Cleaning& turn) {
            return turn.finding->id == finding.id && turn.finding->urls == finding.urls && turn.result &&
                   turn.result->freed;
        });
    };
    return late.size() > 0 && std::ranges::any_of(findings_, [&](const FindingPointer& finding) {
               return late.touches(*finding) && !isGone(*finding);
           });
}

void AppModel::removeFindings(const std::unordered_set<std::string_view>& ids) {
    // Findings with the same id are one item and are removed together. Comparing ids costs far more than
    // comparing pointers.
    Index& index = this->index();
    const bool hasTwins = index.size() < findings_.size();
    std::unordered_set<const Finding*> gone;
    for (const std::string_view id : ids) {
        if (const auto known = index.find(id); known != index.end())
            gone.insert(known->second.get());
    }
    if (gone.empty())
        return;
    const auto goes = [&](const FindingPointer& finding) {
        return hasTwins ? ids.contains(finding->id) : gone.contains(finding.get());
    };
    removed_.clear();
    Findings left;
    left.reserve(findings_.size());
    for (FindingPointer& finding : findings_)
        (goes(finding) ? removed_ : left).push_back(std::move(finding));
    findings_ = std::move(left);
    for (const FindingPointer& finding : removed_) {
        if (sums_)
            (*sums_)[finding->level].add(*finding, -1);
        index.erase(finding->id);
    }
    emit findingsChanged();
    removed_.clear();
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
        const std::shared_ptr<const Cleaner::TrashContents> contents = co_await lookAtTrash();
        if (isEnding_)
            co_return;
        if (!contents->isAllFromHere()) {
            askAboutTrash(contents);
            co_return;
        }
        hasMore = co_await emptyWhatWasSeen(contents);
    }
}

QCoro::Task<> AppModel::askToEmptyTrash() {
    expectUiThread();
    dismissTrashQuestion();
    std::shared_ptr<const Cleaner::TrashContents> contents = co_await lookAtTrash();
    if (!isEnding_)
        askAboutTrash(std::move(contents));
}

QCoro::Task<std::shared_ptr<const Cleaner::TrashContents>> AppModel::lookAtTrash() {
    auto look = workers_->run([contents = services_.trashContents, fromHere = trashed_] {
        return std::make_shared<const Cleaner::TrashContents>(contents(fromHere));
    });
    co_return co_await look;
}

void AppModel::askAboutTrash(std::shared_ptr<const Cleaner::TrashContents> contents) {
    assign(trashQuestion_, TrashQuestion{.id = QUuid::createUuid(), .contents = std::move(contents)},
           &AppModel::trashQuestionChanged);
}

void AppModel::noteTouchedTrash(CleanedPaths& cleaned) const {
    cleaned.addTouched(folders().trash);
    for (const FindingPointer& finding : findings_) {
        if (isTrash(*finding))
            std::ranges::for_each(finding->urls, [&](const std::string& path) { cleaned.addTouched(path); });
    }
}

void AppModel::shrinkTrash(std::int64_t freed, bool isEmpty) {
    std::vector<FindingPointer> trashes;
    std::ranges::copy_if(findings_, std::back_inserter(trashes), [&](const FindingPointer& finding) {
        return isTrash(*finding) || finding->id == folders().trash;
    });
    std::unordered_set<std::string_view> gone;
    for (const FindingPointer& trash : trashes) {
        if (isEmpty)
            gone.insert(trash->id);
        else if (const auto place = find(trash->id); freed > 0 && place != findings_.end())
            change(place,
                   [&](Finding& finding) { finding.size = std::max<std::int64_t>(finding.size - freed, 0); });
    }
    removeFindings(gone);
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

QCoro::Task<Cleaner::EmptiedTrash> AppModel::emptySeen(std::shared_ptr<const Cleaner::TrashContents> seen) {
    using Emptied = std::expected<Cleaner::EmptiedTrash, CleanFailure>;
    auto work = oneAtATime([seen, empty = services_.emptyTrash, stop = cleanStop_.get_token()]() -> Emptied {
        return empty(*seen, stop);
    });
    Emptied direct = co_await work;
    if (isEnding_)
        co_return {};
    Cleaner::EmptiedTrash emptied =
        direct ? std::move(*direct) : Cleaner::EmptiedTrash{.failure = std::move(direct.error())};
    if (cleanStop_.stop_requested()) {
        if (emptied.itemsLeft > 0 && !emptied.failure)
            emptied.failure = CleanError{CleanError::Failed{"Çöp kutusunun boşaltılması durduruldu."}};
    } else if (!emptied.isDone() && emptied.mayAskDesktop) {
        // Not serialised with removals: the desktop may take any time.
        auto call = workers_->run([seen, ask = services_.emptyTrashByDesktop, stop = stop_.get_token()] {
            return ask(*seen, stop);
        });
        Cleaner::EmptiedTrash rest = co_await call;
        if (isEnding_)
            co_return {};
        addChecked(rest.bytes, emptied.bytes);
        // If the desktop was not asked after all because something was added, the first failure is the
        // reason.
        if (rest.itemsLeft > 0 && !rest.failure)
            rest.failure = std::move(emptied.failure);
        emptied = std::move(rest);
    }
    co_return emptied;
}

QCoro::Task<bool> AppModel::emptyAndTell(std::shared_ptr<const Cleaner::TrashContents> seen) {
    const Cleaner::EmptiedTrash emptied = co_await emptySeen(std::move(seen));
    if (isEnding_)
        co_return false;
    if (phase_ == Phase::scanning)
        noteTouchedTrash(scan_->cleaned);
    std::int64_t sum = freedBytes_;
    addChecked(sum, emptied.bytes);
    assign(freedBytes_, sum, &AppModel::freedBytesChanged);
    if (emptied.isDone() && emptied.itemsNew == 0) {
        trashed_.clear();
        assign(trashedBytes_, 0, &AppModel::trashedBytesChanged);
        shrinkTrash(emptied.bytes, true);
    } else {
        shrinkTrash(emptied.bytes, false);
        co_await countTrashed();
        if (isEnding_)
            co_return false;
    }
    if (emptied.failure) {
        std::string message = errorDescription(*emptied.failure, folders());
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

QCoro::Task<> AppModel::perform(std::string_view action, const Finding& finding) {
    expectUiThread();
    const FindingAction* row = findingAction(action);
    if (row == nullptr)
        co_return;
    // Copies: the finding may be removed while the desktop is asked.
    auto work =
        workers_->run([row, services = services_, finding] { return row->perform(services, finding); });
    auto problem = co_await work;
    if (problem && !isEnding_)
        showAlert(std::move(problem->title), std::move(problem->message));
}

void AppModel::openFullDiskAccessSettings() {
    expectUiThread();
    workers_->post([open = services_.openUrl] { open(diskAccessSettings); });
}

}  // namespace ulvak

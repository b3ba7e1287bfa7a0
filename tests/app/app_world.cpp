#include "app/app_world.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace ulvak::test {

using namespace std::chrono_literals;

testing::AssertionResult eventually(const std::function<bool()>& holds) {
    const QDeadlineTimer deadline(60s);
    QTimer look;  // what the test waits for need not come as an event
    look.setObjectName(testsTimer);
    look.start(2ms);
    while (!holds()) {
        if (deadline.hasExpired())
            return testing::AssertionFailure() << "it has not come about in time";
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return testing::AssertionSuccess();
}

void Gate::pass(std::stop_token stop) {
    std::unique_lock lock(mutex_);
    ++arrived_;
    // A test that has failed opens it no more, and its application waits for the worker.
    changed_.wait_for(lock, stop, 5min, [this] { return isOpen_; });
}

void Gate::open() {
    const std::scoped_lock lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
}

int Gate::arrived() const {
    const std::scoped_lock lock(mutex_);
    return arrived_;
}

Finding staged(const std::string& id, SafetyLevel level, std::int64_t size) {
    Finding finding;
    finding.id = id;
    finding.urls = {id};
    finding.size = size;
    finding.original = {.level = level, .title = "ad " + id, .explanation = "neden " + id};
    resetVerdict(finding);
    return finding;
}

Finding guessed(const std::string& id, SafetyLevel level) {
    Finding finding = staged(id, level);
    finding.original.source = VerdictSource::heuristic;
    resetVerdict(finding);
    return finding;
}

Verdict answer(SafetyLevel level) {
    return {.level = level,
            .title = "modelin adı",
            .explanation = "modelin açıklaması",
            .source = VerdictSource::ai,
            .confidence = 85};
}

/// The scans to come. Threads: any.
struct AppTest::Stage {
    std::mutex mutex;
    std::deque<StagedScan> scans;  ///< guarded by `mutex`

    StagedScan next() {
        const std::scoped_lock lock(mutex);
        if (scans.empty())
            return {};
        StagedScan scan = std::move(scans.front());
        scans.pop_front();
        return scan;
    }

    std::vector<Finding> run(ScanProgress& progress, const std::stop_token& stop) {
        StagedScan scan = next();
        progress.addFiles(scan.files);
        progress.addBytes(scan.bytes);
        progress.addDenied(scan.denied);
        progress.setCurrent(scan.current);
        if (scan.gate)
            scan.gate->pass(scan.heedsStop ? stop : std::stop_token());
        return std::move(scan.findings);
    }
};

const UserFolders& ayse() {
    static const UserFolders folders = [] {
        const std::string home = "/home/ayşe";
        const bool isMacs = platform::trashLayout().items.empty();
        return UserFolders{.home = home,
                           .temp = "/tmp",
                           .cache = "/C",
                           .trash = home + (isMacs ? "/.Trash" : "/.local/share/Trash")};
    }();
    return folders;
}

AppTest::AppTest() : stage_(std::make_shared<Stage>()) {
    services = {
        .folders = ayse(),
        .scan = [stage = stage_](ScanProgress& progress,
                                 const std::stop_token& stop) { return stage->run(progress, stop); },
        .aiStatus = [](const std::stop_token&) { return AIStatus{}; },
        .runningApplications = [] { return AppServices::Names(); },
        .runningAmong = [](std::span<const std::string>) { return AppServices::Names(); },
        .classify = [](const Finding&, std::string_view, std::span<const std::string>,
                       const std::stop_token&) -> AIClassifier::Result {
            return std::unexpected(AIClassifier::Error{AIClassifier::Failure::guardrail});
        },
        .clean = [record = cleaned, trash = trash](const Finding& finding, CleanMode mode,
                                                   CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
            record->add(finding.id);
            if (mode == CleanMode::trash && std::holds_alternative<CleanAction::Trash>(finding.action.value))
                trash->fromHere += finding.size;
            return finding.size;
        },
        .trashContents = [trash =
                              trash](std::span<const platform::TrashedItem>) { return trash->contents(); },
        .emptyTrash = [trash = trash](const Cleaner::TrashContents&,
                                      const std::stop_token&) { return trash->empty(); },
        .emptyTrashByDesktop = [](const Cleaner::TrashContents&,
                                  const std::stop_token&) { return Cleaner::EmptiedTrash(); },
        .recordTrashed = [](std::span<const platform::TrashedItem>) {},
        .reveal = [](std::span<const std::string>) { return true; },
        .openUrl = [](std::string_view) {},
        .diskInfo = [] { return std::optional(DiskInfo{.total = 1000, .available = 400}); },
    };
}

AppTest::~AppTest() = default;

void AppTest::stage(StagedScan scan) {
    const std::scoped_lock lock(stage_->mutex);
    stage_->scans.push_back(std::move(scan));
}

AppModel& AppTest::start() {
    app_.reset();
    app_ = std::make_unique<AppModel>(services, verdictsPath);
    using Signal = void (AppModel::*)();
    const std::pair<Signal, std::string> all[] = {
        {&AppModel::phaseChanged, "phase"},
        {&AppModel::findingsChanged, "findings"},
        {&AppModel::diskChanged, "disk"},
        {&AppModel::aiStatusChanged, "aiStatus"},
        {&AppModel::scannedFilesChanged, "scannedFiles"},
        {&AppModel::scannedBytesChanged, "scannedBytes"},
        {&AppModel::currentPathChanged, "currentPath"},
        {&AppModel::deniedCountChanged, "deniedCount"},
        {&AppModel::scanDurationChanged, "scanDuration"},
        {&AppModel::analyzingChanged, "analyzing"},
        {&AppModel::batchProgressChanged, "batchProgress"},
        {&AppModel::cleaningChanged, "cleaning"},
        {&AppModel::trashedBytesChanged, "trashedBytes"},
        {&AppModel::freedBytesChanged, "freedBytes"},
        {&AppModel::alertChanged, "alert"},
        {&AppModel::trashQuestionChanged, "trashQuestion"},
    };
    for (const auto& [signal, name] : all)
        QObject::connect(app_.get(), signal, app_.get(), [this, text = name] { signalled->add(text); });
    return *app_;
}

AppModel& AppTest::startWith(std::vector<Finding> findings) {
    start();
    scanFor(std::move(findings));
    return *app_;
}

void AppTest::scanFor(std::vector<Finding> findings) {
    stage({.findings = std::move(findings)});
    app_->scan();
    ASSERT_TRUE(eventually([&] { return app_->phase() != AppModel::Phase::scanning; }));
}

std::vector<std::string> AppTest::ids() const {
    std::vector<std::string> result;
    for (const FindingPointer& finding : app_->findings())
        result.push_back(finding->id);
    return result;
}

VerdictEntries AppTest::remembered() const {
    return VerdictStore(verdictsPath).entries();
}

void runToEnd(QCoro::Task<> task) {
    EXPECT_TRUE(eventually([&] { return task.isReady(); }));
}

void AppTest::analyze(const std::string& id, const std::string& note) {
    runToEnd(app_->analyze(id, note));
}

void AppTest::clean(std::vector<std::string> which, CleanMode mode) {
    runToEnd(app_->clean(std::move(which), mode));
}

void AppTest::emptyTrash() {
    runToEnd(app_->emptyTrash());
}

}  // namespace ulvak::test

#include "support/app_test.h"

#include <expected>

namespace ulvak::test {

Finding staged(const std::string& id, SafetyLevel level, std::int64_t size) {
    return asFound(
        {.id = id, .size = size, .level = level, .title = "ad " + id, .explanation = "neden " + id});
}

Finding guessed(const std::string& id, SafetyLevel level) {
    return guessed(staged(id, level));
}

Verdict answer(SafetyLevel level) {
    return {.level = level,
            .title = "modelin adı",
            .explanation = "modelin açıklaması",
            .source = VerdictSource::ai,
            .confidence = 85};
}

AppTest::AppTest() {
    world.disk = {.total = 1000, .available = 400};
    world.reply = std::unexpected(AIClassifier::Error{AIClassifier::Failure::guardrail});
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
    ASSERT_TRUE(waitUntil([&] { return app_->phase() != AppModel::Phase::scanning; }));
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
    EXPECT_TRUE(waitUntil([&] { return task.isReady(); }));
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

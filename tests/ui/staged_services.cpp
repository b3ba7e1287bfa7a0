#include "ui/staged_services.h"

#include <algorithm>
#include <utility>

#include "core/paths.h"

namespace ulvak::test {

void Door::set(bool open) {
    const std::scoped_lock lock(mutex_);
    isOpen_ = open;
    moved_.notify_all();
}

void Door::pass() {
    std::unique_lock lock(mutex_);
    moved_.wait(lock, [this] { return isOpen_; });
}

StagedServices::~StagedServices() {
    for (Door* door : {&scanDoor, &classifyDoor, &cleanDoor, &emptyDoor})
        door->open();
}

void StagedServices::note(std::string call) {
    const std::scoped_lock lock(mutex_);
    calls_.push_back(std::move(call));
}

std::vector<std::string> StagedServices::calls() const {
    const std::scoped_lock lock(mutex_);
    return calls_;
}

int StagedServices::count(std::string_view beginning) const {
    return static_cast<int>(
        std::ranges::count_if(calls(), [&](const std::string& call) { return call.starts_with(beginning); }));
}

AppServices StagedServices::services() {
    AppServices services;
    services.folders = {.home = "/home/ayşe", .temp = "/tmp", .cache = "/C", .trash = "/home/ayşe/.Trash"};
    services.scan = [this](ScanProgress& progress, const std::stop_token&) {
        note("scan");
        progress.addFiles(files);
        progress.addBytes(bytes);
        progress.addDenied(denied);
        progress.setCurrent(current);
        scanDoor.pass();
        return result;
    };
    services.aiStatus = [this](const std::stop_token&) {
        ++statusRequests;
        return status;
    };
    services.runningApplications = [] { return std::vector<std::string>(); };
    services.runningAmong = [this](std::span<const std::string>) { return running; };
    services.classify = [this](const Finding& finding, std::string_view text, std::span<const std::string>,
                               const std::stop_token&) -> AIClassifier::Result {
        note("classify " + finding.id + " " + std::string(text));
        classifyDoor.pass();
        if (!classifyFailure.empty())
            return std::unexpected(AIClassifier::Error{platform::ModelError{.text = classifyFailure}});
        return answer;
    };
    services.clean = [this](const Finding& finding, CleanMode mode,
                            CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
        note((mode == CleanMode::trash ? "clean trash " : "clean permanent ") + finding.id);
        cleanDoor.pass();
        if (cleanFailure)
            return std::unexpected(*cleanFailure);
        return finding.size;
    };
    services.trashContents = [this](std::span<const platform::TrashedItem>) { return trash; };
    services.emptyTrash = [this](const Cleaner::TrashContents& asked, const std::stop_token& stop) {
        note("empty");
        emptyDoor.pass();
        if (stop.stop_requested())
            return Cleaner::EmptiedTrash{.itemsLeft = asked.items};
        return Cleaner::EmptiedTrash{.bytes = asked.bytes};
    };
    services.emptyTrashByDesktop = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash();
    };
    services.recordTrashed = [](std::span<const platform::TrashedItem>) {};
    services.reveal = [this](std::span<const std::string> paths) {
        note("reveal " + paths.front());
        return hasFileBrowser;
    };
    services.openUrl = [this](std::string_view url) { note("open " + std::string(url)); };
    services.hasPrivacySettings = hasPrivacySettings;
    services.diskInfo = [this] { return disk; };
    return services;
}

Finding finding(std::string path, SafetyLevel level, std::int64_t size) {
    Finding finding{.id = path,
                    .urls = {path},
                    .size = size,
                    .level = level,
                    .title = std::string(Paths::lastComponent(path)),
                    .explanation = "Açıklama.",
                    .source = VerdictSource::rule,
                    .fileCount = 1234};
    finding.original = currentVerdict(finding);
    return finding;
}

Finding guessed(Finding finding) {
    finding.source = VerdictSource::heuristic;
    finding.original = currentVerdict(finding);
    return finding;
}

Finding uncleanable(Finding finding, std::string reason) {
    finding.action = {CleanAction::None{std::move(reason)}};
    return finding;
}

Finding simulator(Finding finding) {
    finding.action = {CleanAction::DeleteSimulator{.udid = "0000"}};
    return finding;
}

}  // namespace ulvak::test

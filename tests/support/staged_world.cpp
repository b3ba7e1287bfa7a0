#include "support/staged_world.h"

#include <algorithm>
#include <expected>
#include <span>
#include <utility>
#include <variant>

#include "platform/trash.h"

namespace ulvak::test {

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

StagedWorld::StagedWorld() {
    services.folders = ayse();
    serveScans();
    serveModel();
    serveRemovals();
    serveDesktop();
    openGates();
}

void StagedWorld::openGates() {
    for (Gate* gate : {&scanGate, &classifyGate, &cleanGate, &emptyGate})
        gate->open();
}

int StagedWorld::count(std::string_view beginning) const {
    return static_cast<int>(
        std::ranges::count_if(calls(), [&](const std::string& call) { return call.starts_with(beginning); }));
}

void StagedWorld::stage(StagedScan scan) {
    const std::scoped_lock lock(mutex_);
    scans_.push_back(std::move(scan));
}

StagedScan StagedWorld::nextScan() {
    const std::scoped_lock lock(mutex_);
    if (scans_.empty())
        return {.findings = result, .files = files, .bytes = bytes, .denied = denied, .current = current};
    StagedScan scan = std::move(scans_.front());
    scans_.pop_front();
    return scan;
}

void StagedWorld::serveScans() {
    services.scan = [this](ScanProgress& progress, const std::stop_token& stop) {
        calls_.add("scan");
        StagedScan scan = nextScan();
        progress.addFiles(scan.files);
        progress.addBytes(scan.bytes);
        progress.addDenied(scan.denied);
        progress.setCurrent(scan.current);
        if (scan.gate)
            scan.gate->pass(scan.heedsStop ? stop : std::stop_token());
        scanGate.pass();
        return std::move(scan.findings);
    };
}

void StagedWorld::serveModel() {
    services.aiStatus = [this](const std::stop_token&) {
        ++statusRequests;
        return status;
    };
    services.applications = [] { return FolderContext::Applications(); };
    services.classify = [this](const Finding& finding, std::string_view note,
                               const FolderContext::Applications&, const std::stop_token&) {
        calls_.add("classify " + finding.id + " " + std::string(note));
        classifyGate.pass();
        return reply;
    };
}

void StagedWorld::serveRemovals() {
    services.runningAmong = [this](std::span<const std::string>) { return running; };
    services.processesAmong = [](std::span<const std::string>) { return AppServices::Names(); };
    services.clean = [this](const Finding& finding, CleanMode mode,
                            CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
        calls_.add((mode == CleanMode::trash ? "clean trash " : "clean permanent ") + finding.id);
        cleaned->add(finding.id);
        cleanGate.pass();
        if (mode == CleanMode::trash && std::holds_alternative<CleanAction::Trash>(finding.action.value))
            trash->fromHere += finding.size;
        return finding.size;
    };
    services.trashContents = [this](std::span<const platform::TrashedItem>) { return trash->contents(); };
    services.emptyTrash = [this](const Cleaner::TrashContents& asked, const std::stop_token& stop) {
        calls_.add("empty");
        emptyGate.pass();
        return stop.stop_requested() ? Cleaner::EmptiedTrash{.itemsLeft = asked.items} : trash->empty();
    };
    services.emptyTrashByDesktop = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash();
    };
    services.recordTrashed = [](std::span<const platform::TrashedItem>) {};
}

void StagedWorld::serveDesktop() {
    services.reveal = [this](std::span<const std::string> paths) {
        calls_.add("reveal " + paths.front());
        return true;
    };
    services.openUrl = [this](std::string_view url) { calls_.add("open " + std::string(url)); };
    services.diskInfo = [this] { return disk; };
}

}  // namespace ulvak::test

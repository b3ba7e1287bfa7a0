#include "app/app_services.h"

#include "ai/machine_model.h"
#include "platform/desktop.h"
#include "survey/scanner.h"

namespace ulvak {
AppServices AppServices::system(const UserFolders& folders) {
    const auto cleaner = std::make_shared<const Cleaner>(folders);
    return {
        .folders = folders,
        .scan = [folders](ScanProgress& progress,
                          const std::stop_token& stop) { return Scanner{progress, folders}.run(stop); },
        .aiStatus = [](const std::stop_token& stop) { return AIStatus::current(machineModel(), stop); },
        .applications = [folders] { return FolderContext::Applications::ofThisMachine(folders); },
        .runningAmong = [](std::span<const std::string> among) { return Cleaner::runningApps(among); },
        .processesAmong = [](std::span<const std::string> among) { return Cleaner::runningProcesses(among); },
        .classify =
            [folders](const Finding& finding, std::string_view note, const FolderContext::Applications& apps,
                      const std::stop_token& stop) {
                return AIClassifier::classify(
                    finding, note, apps.running, machineModel(),
                    {.folders = folders, .installed = apps.installed, .stop = stop});
            },
        .clean = [cleaner](const Finding& finding, CleanMode mode,
                           CleanRun& run) { return cleaner->clean(finding, mode, run); },
        .prepareClean = [cleaner](std::span<const std::shared_ptr<const Finding>> findings,
                                  CleanMode mode) { return cleaner->prepare(findings, mode); },
        .trashContents = Cleaner::trashContents,
        .emptyTrash = [cleaner](const Cleaner::TrashContents& asked,
                                const std::stop_token& stop) { return cleaner->emptyTrash(asked, stop); },
        .emptyTrashByDesktop =
            [cleaner](const Cleaner::TrashContents& asked, const std::stop_token& stop) {
                return cleaner->emptyTrashByDesktop(asked, stop);
            },
        .recordTrashed = Cleaner::recordTrashedFolders,
        .reveal = platform::revealInFileBrowser,
        .openUrl = platform::openUrl,
        .hasPrivacySettings = platform::hasPrivacySettings(),
        .diskInfo = DiskInfo::current,
    };
}

}  // namespace ulvak

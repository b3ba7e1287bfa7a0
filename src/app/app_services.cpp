#include "app/app_services.h"

#include "platform/desktop.h"
#include "scan/scanner.h"

namespace ulvak {
AppServices AppServices::system() {
    return {
        .scan = [](ScanProgress& progress,
                   const std::stop_token& stop) { return Scanner{progress}.run(stop); },
        .aiStatus =
            [](const std::stop_token& stop) {
                return AIStatus::current(platform::systemLanguageModel(), stop);
            },
        .runningApplications = platform::runningApplications,
        .runningApps = [](std::span<const std::string> among) { return Cleaner::runningApps(among); },
        .classify =
            [](const Finding& finding, std::string_view note, std::span<const std::string> running,
               const std::stop_token& stop) {
                return AIClassifier::classify(finding, note, running, platform::systemLanguageModel(),
                                              {.stop = stop});
            },
        .clean = [](const Finding& finding, CleanMode mode,
                    CleanRun& run) { return Cleaner::clean(finding, mode, run); },
        .prepareClean = Cleaner::prepare,
        .trashContents = Cleaner::trashContents,
        .emptyTrash = [](const Cleaner::TrashContents& asked,
                         const std::stop_token& stop) { return Cleaner::emptyTrash(asked, stop); },
        .emptyTrashByDesktop =
            [](const Cleaner::TrashContents& asked, const std::stop_token& stop) {
                return Cleaner::emptyTrashByDesktop(asked, stop);
            },
        .recordTrashed = Cleaner::recordTrashedFolders,
        .reveal = platform::revealInFileBrowser,
        .openUrl = platform::openUrl,
        .hasPrivacySettings = platform::hasPrivacySettings(),
        .diskInfo = DiskInfo::current,
    };
}

}  // namespace ulvak

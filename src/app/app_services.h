#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "ai/ai_classifier.h"
#include "ai/ai_status.h"
#include "ai/folder_context.h"
#include "clean/clean_run.h"
#include "clean/cleaner.h"
#include "core/disk_info.h"
#include "core/finding.h"
#include "core/paths.h"
#include "scan/scan_progress.h"
#include "survey/scan_error.h"

namespace ulvak {

/// The application's side effects. Every member is set. Stop tokens are triggered at program exit.
struct AppServices {
    using Names = std::vector<std::string>;

    UserFolders folders;

    // On workers, concurrently; may block.
    std::function<std::expected<std::vector<Finding>, ScanError>(ScanProgress&, std::stop_token)> scan;
    std::function<AIStatus(std::stop_token)> aiStatus;
    std::function<FolderContext::Applications()> applications;
    /// Those of the given names that are running.
    std::function<Names(std::span<const std::string>)> runningAmong;
    /// Those of the given names of processes, or patterns for them, that are running.
    std::function<Names(std::span<const std::string>)> processesAmong;
    std::function<AIClassifier::Result(const Finding&, std::string_view note,
                                       const FolderContext::Applications&, std::stop_token)>
        classify;
    std::function<std::expected<std::int64_t, CleanFailure>(const Finding&, CleanMode, CleanRun&)> clean;
    /// Work done once ahead of cleaning several findings, for `CleanRun::ahead`; may be null.
    std::function<std::shared_ptr<CleanAhead>(std::span<const std::shared_ptr<const Finding>>, CleanMode)>
        prepareClean = [](std::span<const std::shared_ptr<const Finding>>, CleanMode) { return nullptr; };
    /// The contents of the Trashes, and how much of it is these items.
    std::function<Cleaner::TrashContents(std::span<const platform::TrashedItem> fromHere)> trashContents;
    /// Removes only what was listed.
    std::function<Cleaner::EmptiedTrash(const Cleaner::TrashContents& asked, std::stop_token)> emptyTrash;
    std::function<Cleaner::EmptiedTrash(const Cleaner::TrashContents& asked, std::stop_token)>
        emptyTrashByDesktop;
    /// Records them for file managers, after a batch.
    std::function<void(std::span<const platform::TrashedItem>)> recordTrashed;
    /// Shows and selects all these items in the file manager. False if none can be opened.
    std::function<bool(std::span<const std::string> paths)> reveal;
    std::function<void(std::string_view url)> openUrl;

    /// Delay before a model that did not answer is asked for its status again.
    std::chrono::milliseconds statusPause = std::chrono::seconds(10);

    /// Whether the system has a settings page where the user can grant this program wider access.
    bool hasPrivacySettings = false;

    // On the UI thread; returns at once.
    std::function<std::optional<DiskInfo>()> diskInfo;

    /// The real system, for the user whose folders these are.
    [[nodiscard]] static AppServices system(const UserFolders& folders);
};

}  // namespace ulvak

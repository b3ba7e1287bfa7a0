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
#include "clean/clean_run.h"
#include "clean/cleaner.h"
#include "core/disk_info.h"
#include "core/finding.h"
#include "core/paths.h"
#include "scan/scan_progress.h"
#include "survey/scan_error.h"

namespace ulvak {

/// What the application does to the world outside its own state. Each is set. A stop is asked for when the
/// program ends.
struct AppServices {
    using Names = std::vector<std::string>;

    UserFolders folders;

    // On workers, several at once; they may block.
    std::function<std::expected<std::vector<Finding>, ScanError>(ScanProgress&, std::stop_token)> scan;
    std::function<AIStatus(std::stop_token)> aiStatus;
    /// The names of all running applications, in the system's order.
    std::function<Names()> runningApplications;
    /// Those of the given names that are running.
    std::function<Names(std::span<const std::string>)> runningAmong;
    std::function<AIClassifier::Result(const Finding&, std::string_view note,
                                       std::span<const std::string> running, std::stop_token)>
        classify;
    std::function<std::expected<std::int64_t, CleanFailure>(const Finding&, CleanMode, CleanRun&)> clean;
    /// What can be done once for several findings that are cleaned next, for `CleanRun::ahead`; or null.
    std::function<std::shared_ptr<CleanAhead>(std::span<const std::shared_ptr<const Finding>>, CleanMode)>
        prepareClean = [](std::span<const std::shared_ptr<const Finding>>, CleanMode) { return nullptr; };
    /// What the Trashes hold, and how much of it these items.
    std::function<Cleaner::TrashContents(std::span<const platform::TrashedItem> fromHere)> trashContents;
    /// Nothing but what was looked at.
    std::function<Cleaner::EmptiedTrash(const Cleaner::TrashContents& asked, std::stop_token)> emptyTrash;
    std::function<Cleaner::EmptiedTrash(const Cleaner::TrashContents& asked, std::stop_token)>
        emptyTrashByDesktop;
    /// For file managers, after a batch.
    std::function<void(std::span<const platform::TrashedItem>)> recordTrashed;
    /// Shows and selects all these items in the file browser. False when there is none that opens.
    std::function<bool(std::span<const std::string> paths)> reveal;
    std::function<void(std::string_view url)> openUrl;

    /// Before a model that has not answered is asked again whether it is there.
    std::chrono::milliseconds statusPause = std::chrono::seconds(10);

    /// Whether the system has a page of settings on which the user can let this program see more.
    bool hasPrivacySettings = false;

    // On the UI thread; it returns at once.
    std::function<std::optional<DiskInfo>()> diskInfo;

    /// The system's, for the user whose folders these are.
    [[nodiscard]] static AppServices system(const UserFolders& folders);
};

}  // namespace ulvak

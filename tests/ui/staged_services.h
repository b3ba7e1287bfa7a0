#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_services.h"

namespace ulvak::test {

/// A door in the way of a worker: it waits there while the door is shut.
class Door {
public:
    void shut() { set(false); }
    void open() { set(true); }
    void pass();

private:
    void set(bool open);

    std::mutex mutex_;
    std::condition_variable moved_;
    bool isOpen_ = true;  ///< guarded by `mutex_`
};

/// What the application is told about the world, and what it asked of it.
/// Threads: fields are set before the services are used or while nothing runs; calls can be read any time.
class StagedServices {
public:
    StagedServices() = default;
    ~StagedServices();
    StagedServices(const StagedServices&) = delete;
    StagedServices& operator=(const StagedServices&) = delete;

    std::vector<Finding> result;
    std::optional<DiskInfo> disk = DiskInfo{.total = 500'000'000'000, .available = 100'000'000'000};
    AIStatus status;  ///< available
    std::vector<std::string> running;
    std::optional<CleanFailure> cleanFailure;
    std::string classifyFailure;  ///< empty for an answer
    Verdict answer = {.level = SafetyLevel::safe,
                      .title = "Yorum",
                      .explanation = "Modelin açıklaması.",
                      .source = VerdictSource::ai,
                      .confidence = 85};
    Cleaner::TrashContents trash{.bytes = 1, .items = 1, .bytesFromHere = 1, .itemsFromHere = 1};
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    bool hasPrivacySettings = false;
    bool hasFileBrowser = true;
    std::string current = "/home/biri/klasör";

    std::atomic<int> statusRequests = 0;

    Door scanDoor;
    Door classifyDoor;
    Door cleanDoor;
    Door emptyDoor;

    /// "scan", "clean trash ID", "clean permanent ID", "classify ID NOTE", "reveal PATH", "empty", "open
    /// URL".
    [[nodiscard]] std::vector<std::string> calls() const;
    [[nodiscard]] int count(std::string_view beginning) const;

    /// This object outlives what uses them.
    [[nodiscard]] AppServices services();

private:
    void note(std::string call);

    mutable std::mutex mutex_;
    std::vector<std::string> calls_;  ///< guarded by `mutex_`
};

/// A finding of a rule, with this path as its id.
[[nodiscard]] Finding finding(std::string path, SafetyLevel level, std::int64_t size = 1'000'000'000);
[[nodiscard]] Finding guessed(Finding finding);
[[nodiscard]] Finding uncleanable(Finding finding, std::string reason = "Bunu sistem yönetir.");
[[nodiscard]] Finding simulator(Finding finding);

}  // namespace ulvak::test

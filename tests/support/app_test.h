#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "support/event_loop.h"
#include "support/findings.h"
#include "support/staged_world.h"
#include "support/temp_tree.h"

namespace ulvak::test {

/// A finding with the Trash action, judged by a rule.
[[nodiscard]] Finding staged(const std::string& id, SafetyLevel level = SafetyLevel::safe,
                             std::int64_t size = 100);
[[nodiscard]] Finding guessed(const std::string& id, SafetyLevel level = SafetyLevel::keep);
[[nodiscard]] Verdict answer(SafetyLevel level = SafetyLevel::regenerable);

/// An application over a staged world whose model is available but fails. Anything not staged is real.
class AppTest : public testing::Test {
protected:
    AppTest();

    /// Queues the next scan; an unstaged scan finds nothing.
    void stage(StagedScan scan) { world.stage(std::move(scan)); }
    /// Restarts the application.
    AppModel& start();
    /// Destroys it.
    void end() { app_.reset(); }
    /// Starts with the result of a scan.
    AppModel& startWith(std::vector<Finding> findings);
    /// Scans to completion.
    void scanFor(std::vector<Finding> findings);

    [[nodiscard]] std::vector<std::string> ids() const;
    /// The verdicts file as a newly started program would read it.
    [[nodiscard]] VerdictEntries remembered() const;
    [[nodiscard]] AppModel& app() { return *app_; }

    /// Runs an operation to completion.
    void analyze(const std::string& id, const std::string& note = "");
    void clean(std::vector<std::string> which, CleanMode mode = CleanMode::trash);
    void emptyTrash();

    TempTree tree;
    std::string verdictsPath = tree.path("veri/verdicts.json");
    StagedWorld world;
    AppServices& services = world.services;
    const std::shared_ptr<StagedTrash>& trash = world.trash;
    const std::shared_ptr<Record<std::string>>& cleaned = world.cleaned;
    std::shared_ptr<Record<std::string>> signalled = std::make_shared<Record<std::string>>();

private:
    std::unique_ptr<AppModel> app_;
};

/// Runs the event loop until an application task has finished.
void runToEnd(QCoro::Task<> task);

}  // namespace ulvak::test

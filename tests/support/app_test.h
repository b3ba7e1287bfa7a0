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

/// A finding of the Trash action, judged by a rule.
[[nodiscard]] Finding staged(const std::string& id, SafetyLevel level = SafetyLevel::safe,
                             std::int64_t size = 100);
[[nodiscard]] Finding guessed(const std::string& id, SafetyLevel level = SafetyLevel::keep);
[[nodiscard]] Verdict answer(SafetyLevel level = SafetyLevel::regenerable);

/// An application over a staged world whose model is there and fails. What is not staged is real.
class AppTest : public testing::Test {
protected:
    AppTest();

    /// The next scan; one that was not staged finds nothing.
    void stage(StagedScan scan) { world.stage(std::move(scan)); }
    /// Starts the application anew.
    AppModel& start();
    /// Destroys it.
    void end() { app_.reset(); }
    /// With the result of a scan.
    AppModel& startWith(std::vector<Finding> findings);
    /// Scans until it is done.
    void scanFor(std::vector<Finding> findings);

    [[nodiscard]] std::vector<std::string> ids() const;
    /// The verdicts file as a program started now would read it.
    [[nodiscard]] VerdictEntries remembered() const;
    [[nodiscard]] AppModel& app() { return *app_; }

    /// Runs an operation to its end.
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

/// Runs the event loop until a task of the application has ended.
void runToEnd(QCoro::Task<> task);

}  // namespace ulvak::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/verdict_store.h"
#include "support/findings.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"
#include "support/temp_tree.h"

// Labels on a server that does not answer must not block startup.

namespace ulvak {
namespace {

using namespace test;
using testing::Contains;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

/// Stores jobs for later.
struct Jobs {
    std::vector<std::function<void()>> jobs;

    [[nodiscard]] VerdictStore::Runner runner() {
        return [this](std::function<void()> job) { jobs.push_back(std::move(job)); };
    }
};

TEST(DeadMounts, LabelsThereAreReadByAJob) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home"), folder("nas")});
    const UserFolders folders{.home = tree.path("home"), .temp = {}, .cache = {}, .trash = {}};
    withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        Jobs writing;
        Jobs reading;
        const VerdictStore store(tree.path("nas/Ulvak/verdicts.json"), folders, VerdictStore::systemTime,
                                 writing.runner(), reading.runner());
        EXPECT_FALSE(nas.wasAsked());
        EXPECT_THAT(writing.jobs, IsEmpty());
        ASSERT_THAT(reading.jobs, SizeIs(1));
        reading.jobs.front()();
        EXPECT_TRUE(nas.wasAsked());
    });
}

TEST(DeadMounts, LabelsThatAreReadLateMeetThoseGivenMeanwhile) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home"), folder("nas")});
    const UserFolders folders{.home = tree.path("home"), .temp = {}, .cache = {}, .trash = {}};
    const std::string path = tree.path("nas/verdicts.json");
    const Verdict keep{.level = SafetyLevel::keep, .source = VerdictSource::user};
    VerdictStore(path).save(keep, asFound({.id = "/before", .size = 10}));
    Jobs writing;
    Jobs reading;
    withPrivateMounts([&] {
        std::unique_ptr<VerdictStore> store;
        {
            const DeadMount nas(tree.path("nas"));
            ASSERT_TRUE(nas.isMounted());
            store = std::make_unique<VerdictStore>(path, folders, VerdictStore::systemTime, writing.runner(),
                                                   reading.runner());
            EXPECT_FALSE(nas.wasAsked());
        }
        EXPECT_THAT(store->entries(), IsEmpty());
        store->save(keep, asFound({.id = "/meanwhile", .size = 10}));
        for (const auto& job : reading.jobs)
            job();
        EXPECT_TRUE(store->adopt());
        EXPECT_FALSE(store->adopt());
        EXPECT_THAT(store->entries(), SizeIs(2));
        for (const auto& job : writing.jobs)
            job();
        EXPECT_THAT(VerdictStore(path).entries(), SizeIs(2));
        EXPECT_THAT(store->entries(), Contains(Key("/before")));
    });
}

TEST(DeadMounts, LabelsElsewhereAreReadAtOnce) {
    const TempTree tree({folder("home")});
    const UserFolders folders{.home = tree.path("home"), .temp = {}, .cache = {}, .trash = {}};
    Jobs reading;
    const VerdictStore store(tree.path("data/verdicts.json"), folders, VerdictStore::systemTime, {},
                             reading.runner());
    EXPECT_THAT(reading.jobs, IsEmpty());
}

}  // namespace
}  // namespace ulvak

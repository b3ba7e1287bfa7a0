#include "store/shared_verdicts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include "store/verdict_store.h"
#include "support/temp_tree.h"

// Several programs sharing one file.

namespace ulvak {
namespace {

using namespace std::chrono_literals;
using test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

/// Stores as if in separate programs, with one shared clock.
class SharedVerdictsTest : public testing::Test {
protected:
    VerdictStore& start(VerdictStore::Runner run = {}) {
        return stores_.emplace_back(path, [this] { return now; }, std::move(run));
    }
    static void save(VerdictStore& store, const std::string& id, SafetyLevel level) {
        store.save({.level = level, .title = "ad", .source = VerdictSource::user},
                   Finding{.id = id, .size = 1});
    }
    /// Saves made here cannot be written to the disk.
    void withoutADisk(const std::function<void()>& body) const {
        const std::string away = tree.path("elsewhere");
        std::filesystem::rename(tree.path("Ulvak"), away);
        std::ofstream(tree.path("Ulvak")) << "no folder";
        body();
        std::filesystem::remove(tree.path("Ulvak"));
        std::filesystem::rename(away, tree.path("Ulvak"));
    }
    [[nodiscard]] VerdictEntries onDisk() const { return VerdictStore(path).entries(); }
    [[nodiscard]] SafetyLevel levelOnDisk(const std::string& id) const {
        return onDisk().at(id).verdict.level;
    }

    TempTree tree;
    std::string path = tree.path("Ulvak/verdicts.json");
    FileTime now = std::chrono::sys_days{std::chrono::year{2026} / 1 / 1};

private:
    std::deque<VerdictStore> stores_;
};

TEST_F(SharedVerdictsTest, EachHasTheOthersEntriesAfterItsNextSave) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(one, "/one", SafetyLevel::keep);
    save(other, "/other", SafetyLevel::safe);
    EXPECT_THAT(onDisk(), ElementsAre(Key("/one"), Key("/other")));
    EXPECT_EQ(other.entries(), onDisk());
    EXPECT_THAT(one.entries(), SizeIs(1));
    int told = 0;
    one.observe([&] { ++told; });
    one.remove("/absent");
    EXPECT_EQ(one.entries(), onDisk());
    EXPECT_EQ(told, 1) << "of what came from the other";
}

TEST_F(SharedVerdictsTest, WhatIsTakenBackInOneStaysAwayInTheOther) {
    VerdictStore& one = start();
    save(one, "/a", SafetyLevel::keep);
    VerdictStore& other = start();
    one.remove("/a");
    save(other, "/b", SafetyLevel::keep);
    EXPECT_THAT(onDisk(), ElementsAre(Key("/b")));
    EXPECT_EQ(other.entries(), onDisk());
}

TEST_F(SharedVerdictsTest, OfTwoLabelsTheLaterStays) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(one, "/a", SafetyLevel::keep);
    now += 1s;
    save(other, "/a", SafetyLevel::safe);
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
    one.remove("/absent");
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
    EXPECT_EQ(one.entries(), onDisk());
}

TEST_F(SharedVerdictsTest, AnAnswerOfTheModelReplacesNoLabelThatItKnewNothingOf) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    const auto answer = [&](const std::string& id) {
        other.save({.level = SafetyLevel::safe, .title = "ad", .source = VerdictSource::ai, .confidence = 90},
                   Finding{.id = id, .size = 1});
    };
    save(one, "/a", SafetyLevel::keep);
    now += 1s;
    answer("/a");
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::keep);
    EXPECT_EQ(other.entries(), onDisk());
    now += 1s;
    answer("/a");
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe) << "asked about the label itself";
}

TEST_F(SharedVerdictsTest, ALabelThatWasWrittenLateDoesNotReplaceALaterOne) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(one, "/absent", SafetyLevel::keep);
    now += 1s;
    withoutADisk([&] {
        save(one, "/a", SafetyLevel::keep);
        one.remove("/b");
    });
    now += 1s;
    save(other, "/a", SafetyLevel::safe);
    save(other, "/b", SafetyLevel::safe);
    now += 1s;
    save(one, "/c", SafetyLevel::keep);
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
    EXPECT_EQ(levelOnDisk("/b"), SafetyLevel::safe) << "it came after it had been taken back";
    EXPECT_EQ(one.entries(), onDisk());
}

TEST_F(SharedVerdictsTest, ALaterLabelOfThisVeryMomentCounts) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(one, "/absent", SafetyLevel::keep);
    withoutADisk([&] { save(one, "/a", SafetyLevel::keep); });
    now += 1s;
    save(other, "/a", SafetyLevel::safe);
    one.remove("/c");
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
}

TEST_F(SharedVerdictsTest, ALabelThatWasWrittenLateReplacesAnEarlierOne) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(other, "/a", SafetyLevel::safe);
    save(other, "/b", SafetyLevel::safe);
    now += 1s;
    withoutADisk([&] {
        save(one, "/a", SafetyLevel::keep);
        one.remove("/b");
    });
    now += 1s;
    one.remove("/absent");
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::keep);
    EXPECT_FALSE(onDisk().contains("/b"));
}

TEST_F(SharedVerdictsTest, AModelsAnswerDoesNotReplaceTheUsersLabelOfTheOther) {
    VerdictStore& one = start();
    VerdictStore& other = start();
    save(other, "/a", SafetyLevel::keep);
    now += 1s;
    one.save({.level = SafetyLevel::safe, .title = "ad", .source = VerdictSource::ai},
             Finding{.id = "/a", .size = 1});
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::keep);
    EXPECT_EQ(one.entries(), onDisk());
}

TEST_F(SharedVerdictsTest, AClockThatIsSetBackLosesNoLabel) {
    VerdictStore& one = start();
    save(one, "/a", SafetyLevel::keep);
    VerdictStore& other = start();
    now -= 24h;
    save(one, "/a", SafetyLevel::safe);
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe) << "who changed it had seen the one before";
    save(other, "/a", SafetyLevel::caution);
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::caution);
    now += 48h;
    save(one, "/b", SafetyLevel::keep);
    now -= 24h;
    save(other, "/b", SafetyLevel::safe);
    EXPECT_EQ(levelOnDisk("/b"), SafetyLevel::safe) << "a date that has not come yet says nothing";
    other.remove("/b");
    EXPECT_FALSE(onDisk().contains("/b"));
}

TEST_F(SharedVerdictsTest, AFileThatIsTakenAwayIsMadeAgainWithAllThatIsKnown) {
    VerdictStore& one = start();
    save(one, "/a", SafetyLevel::keep);
    std::filesystem::remove_all(tree.path("Ulvak"));
    save(one, "/b", SafetyLevel::keep);
    EXPECT_THAT(onDisk(), ElementsAre(Key("/a"), Key("/b")));
}

TEST_F(SharedVerdictsTest, WhatCouldNotBeWrittenIsWrittenAtTheEnd) {
    VerdictStore& one = start();
    save(one, "/a", SafetyLevel::keep);
    withoutADisk([&] { save(one, "/b", SafetyLevel::keep); });
    EXPECT_THAT(onDisk(), SizeIs(1));
    one.writeRest();
    EXPECT_EQ(onDisk(), one.entries());
    EXPECT_THAT(onDisk(), SizeIs(2));
}

TEST_F(SharedVerdictsTest, JobsThatComeTogetherAreOne) {
    std::deque<std::function<void()>> jobs;
    VerdictStore& one = start([&](std::function<void()> job) { jobs.push_back(std::move(job)); });
    save(one, "/a", SafetyLevel::keep);
    save(one, "/b", SafetyLevel::keep);
    ASSERT_THAT(jobs, SizeIs(1));
    EXPECT_THAT(onDisk(), IsEmpty());
    save(start(), "/other", SafetyLevel::safe);
    jobs[0]();
    EXPECT_THAT(onDisk(), SizeIs(3));
    EXPECT_THAT(one.entries(), SizeIs(2)) << "until they are taken over";
    one.adopt();
    EXPECT_EQ(one.entries(), onDisk());
    one.remove("/a");
    save(one, "/a", SafetyLevel::safe);
    ASSERT_THAT(jobs, SizeIs(2));
    jobs[1]();
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
}

TEST_F(SharedVerdictsTest, AChangeDuringTheJobIsForTheNext) {
    std::deque<std::function<void()>> jobs;
    VerdictStore* store = nullptr;
    bool isFirst = true;
    VerdictStore late(
        path,
        [&] {
            // Called during a merge, while another program has the same entry.
            if (store != nullptr && std::exchange(isFirst, false))
                save(*store, "/a", SafetyLevel::safe);
            return now;
        },
        [&](std::function<void()> job) { jobs.push_back(std::move(job)); });
    save(late, "/a", SafetyLevel::keep);
    now += 1s;
    save(start(), "/a", SafetyLevel::caution);
    now += 1s;
    store = &late;
    jobs[0]();
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::caution);
    ASSERT_THAT(jobs, SizeIs(2));
    jobs[1]();
    EXPECT_EQ(levelOnDisk("/a"), SafetyLevel::safe);
    late.adopt();
    EXPECT_EQ(late.entries(), onDisk());
}

}  // namespace
}  // namespace ulvak

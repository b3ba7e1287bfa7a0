#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "platform/files.h"
#include "platform/process.h"
#include "store/verdict_store.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

// What happens to the file when a program dies, when two write at once, and when the disk does not accept it.

namespace ulvak {
namespace {

using test::folder;
using test::TempTree;
using test::textOf;
using testing::ElementsAre;
using testing::SizeIs;

const Verdict label{.level = SafetyLevel::keep,
                    .title = "Videolarım",
                    .explanation = std::string(300, 'x'),
                    .source = VerdictSource::user};

void saveOne(VerdictStore& store, const std::string& id, std::int64_t size) {
    store.save(label, Finding{.id = id, .size = size});
}

/// A child process that runs `body`, which may report numbers to this process.
class Child {
public:
    using Report = std::function<void(std::int32_t)>;

    explicit Child(const std::function<void(const Report&)>& body) {
        auto pipe = platform::makePipe();
        if (!pipe)
            return;
        read_ = std::move(pipe->read);
        process_ = ::fork();
        if (process_ == 0) {
            body([&](std::int32_t number) {
                if (::write(pipe->write.get(), &number, sizeof number) != sizeof number)
                    ::_exit(1);
            });
            ::_exit(0);
        }
    }
    ~Child() { kill(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for the next number reported; -1 once the child is gone.
    [[nodiscard]] std::int32_t next() const {
        std::int32_t number = -1;
        return ::read(read_.get(), &number, sizeof number) == sizeof number ? number : -1;
    }

    void kill() {
        if (process_ <= 0)
            return;
        ::kill(process_, SIGKILL);
        (void)wait();
    }

    /// Whether it exited by itself.
    [[nodiscard]] bool wait() {
        int status = 0;
        const bool ended = ::waitpid(process_, &status, 0) == process_;
        process_ = -1;
        return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t process_ = -1;
    platform::FileDescriptor read_;
};

/// Kills `child` at a random point: after some reports plus some time, less than two saves take. Returns the
/// last number reported, possibly from after that point.
std::int32_t killSomewhere(Child& child, std::minstd_rand& random) {
    const auto maxReports = std::uniform_int_distribution<int>(1, 30)(random);
    std::int32_t last = -1;
    auto started = std::chrono::steady_clock::now();
    auto lastSave = std::chrono::steady_clock::duration::zero();
    for (int i = 0; i < maxReports; ++i) {
        const std::int32_t number = child.next();
        if (number < 0)
            break;
        last = number;
        const auto now = std::chrono::steady_clock::now();
        lastSave = now - std::exchange(started, now);
    }
    const double share = std::uniform_real_distribution<double>(0, 1.5)(random);
    while (std::chrono::steady_clock::now() - started < lastSave * share) {
    }
    child.kill();
    for (std::int32_t number = child.next(); number >= 0; number = child.next())
        last = number;
    return last;
}

TEST(VerdictStoreDurability, HoldsEverySaveThatHadReturnedWhenTheProgramWasKilled) {
    constexpr std::int32_t saves = 1000;
    constexpr std::int32_t ids = 40;
    const TempTree tree;
    const std::string path = tree.path("Ulvak/verdicts.json");
    const auto idOf = [](std::int32_t number) { return "/" + std::to_string(number % ids); };
    std::minstd_rand random(20'251'128);  // NOLINT(bugprone-random-generator-seed): reproducible
    std::int32_t done = -1;
    int kills = 0;
    int leftovers = 0;
    while (done + 1 < saves) {
        Child child([&](const Child::Report& report) {
            VerdictStore store(path);
            for (std::int32_t number = done + 1; number < saves; ++number) {
                saveOne(store, idOf(number), number);
                report(number);
            }
        });
        const std::int32_t last = killSomewhere(child, random);
        ASSERT_GE(last, 0) << "it ended by itself";
        done = std::max(done, last);
        ++kills;
        leftovers += platform::listNames(tree.path("Ulvak")).size() > 1 ? 1 : 0;

        const VerdictStore store(path);
        ASSERT_THAT(store.entries(), SizeIs(testing::Ge(static_cast<std::size_t>(std::min(done + 1, ids)))));
        for (std::int32_t number = std::max(0, done - ids + 1); number <= done; ++number) {
            const std::int64_t held = store.entries().at(idOf(number)).size;
            // The save in progress may have succeeded too.
            ASSERT_TRUE(held == number || (held == number + ids && held == done + 1))
                << number << " " << held;
        }
        ASSERT_THAT(platform::listNames(tree.path("Ulvak")), SizeIs(testing::Le(2U)))
            << "litter does not pile up";
    }
    RecordProperty("kills", kills);
    RecordProperty("leftovers", leftovers);
    VerdictStore store(path);
    store.remove("/absent");
    EXPECT_THAT(platform::listNames(tree.path("Ulvak")), ElementsAre("verdicts.json"));
}

TEST(VerdictStoreDurability, HoldsWhatTwoProgramsHadSavedWhicheverOfThemIsKilled) {
    constexpr int rounds = 12;
    constexpr std::int32_t ids = 25;
    const TempTree tree;
    const std::string path = tree.path("Ulvak/verdicts.json");
    const auto idOf = [](int writer, std::int32_t number) {
        return "/" + std::to_string(writer) + "/" + std::to_string(number % ids);
    };
    std::minstd_rand random(20'261'122);  // NOLINT(bugprone-random-generator-seed): reproducible
    std::array<std::int32_t, 2> done = {-1, -1};
    const auto start = [&](int writer) {
        return std::make_unique<Child>(
            [&path, &idOf, writer,
             first = done.at(static_cast<std::size_t>(writer)) + 1](const Child::Report& report) {
                VerdictStore store(path);
                for (std::int32_t number = first;; ++number) {
                    saveOne(store, idOf(writer, number), number);
                    report(number);
                }
            });
    };
    for (int round = 0; round < rounds; ++round) {
        const std::array writers = {start(0), start(1)};
        // Kill one during the other's work, then the other.
        const auto victim = static_cast<std::size_t>(round % 2);
        done.at(victim) = std::max(done.at(victim), killSomewhere(*writers.at(victim), random));
        done.at(1 - victim) = std::max(done.at(1 - victim), killSomewhere(*writers.at(1 - victim), random));
        const VerdictStore store(path);
        for (int writer = 0; writer < 2; ++writer) {
            const std::int32_t last = done.at(static_cast<std::size_t>(writer));
            for (std::int32_t number = std::max(0, last - ids + 1); number <= last; ++number) {
                const auto held = store.entries().find(idOf(writer, number));
                ASSERT_NE(held, store.entries().end()) << "lost in round " << round;
                ASSERT_GE(held->second.size, number) << "an older one is back in round " << round;
            }
        }
    }
    ASSERT_THAT(platform::listNames(tree.path("Ulvak")), SizeIs(testing::Le(2U)))
        << "litter does not pile up";
}

TEST(VerdictStoreDurability, TwoProgramsThatWriteAtOnceNeverTearTheFileAndLoseNothing) {
    constexpr int saves = 150;
    const TempTree tree;
    const std::string path = tree.path("Ulvak/verdicts.json");
    {
        VerdictStore(path).remove("/absent");
    }
    const auto start = platform::makePipe();
    ASSERT_TRUE(start);
    const auto writer = [&](const std::string& prefix, int entries) {
        return [&path, &start, prefix, entries](const Child::Report& report) {
            VerdictStore store(path);
            report(0);
            char sign = 0;  // neither child may read what the other has written
            if (::read(start->read.get(), &sign, 1) != 1)
                ::_exit(1);
            for (int i = 0; i < saves; ++i)
                saveOne(store, prefix + std::to_string(i % entries), i);
            report(1);
        };
    };
    Child one(writer("/one/", saves));
    Child other(writer("/other/", 3));
    ASSERT_EQ(one.next(), 0);
    ASSERT_EQ(other.next(), 0);
    ASSERT_EQ(::write(start->write.get(), "go", 2), 2);
    std::atomic<bool> isOver = false;
    std::thread waiting([&] {
        EXPECT_EQ(one.next(), 1);
        EXPECT_EQ(other.next(), 1);
        isOver = true;
    });
    int reads = 0;
    for (; reads == 0 || !isOver; ++reads) {
        const auto entries = decodeEntries(textOf(path));
        EXPECT_TRUE(entries) << "torn after " << reads << " reads: " << entries.error().what;
    }
    waiting.join();
    EXPECT_TRUE(one.wait());
    EXPECT_TRUE(other.wait());
    EXPECT_THAT(VerdictStore(path).entries(), SizeIs(saves + 3)) << "nobody's is lost";
    EXPECT_THAT(platform::listNames(tree.path("Ulvak")), ElementsAre("verdicts.json"));
}

TEST(VerdictStoreDurability, AFullDiskLeavesTheOldFileAndNoLitter) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("disk")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("disk"), "size=256k"));
        const std::string path = tree.path("disk/Ulvak/verdicts.json");
        VerdictStore store(path);
        for (int i = 0; i < 100; ++i)
            saveOne(store, "/" + std::to_string(i), i);
        const VerdictEntries before = VerdictStore(path).entries();
        ASSERT_THAT(before, SizeIs(100));
        {
            std::ofstream filler(tree.path("disk/filler"), std::ios::binary);
            while (filler << std::string(4096, 'x') << std::flush) {
            }
        }
        saveOne(store, "/one-more", 1);
        EXPECT_THAT(store.entries(), SizeIs(101)) << "remembered until the program ends";
        EXPECT_EQ(VerdictStore(path).entries(), before);
        EXPECT_THAT(platform::listNames(tree.path("disk/Ulvak")), ElementsAre("verdicts.json"));
        ASSERT_EQ(::unlink(tree.path("disk/filler").c_str()), 0);
        store.remove("/absent");
        EXPECT_EQ(VerdictStore(path).entries(), store.entries()) << "as soon as there is room again";
    });
}

TEST(VerdictStoreDurability, AReadOnlyFolderLeavesTheOldFile) {
    TempTree tree({folder("Ulvak")}, TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    const std::string path = tree.path("Ulvak/verdicts.json");
    test::asUnprivileged([&] {
        VerdictStore store(path);
        saveOne(store, "/a", 1);
        ASSERT_EQ(::chmod(tree.path("Ulvak").c_str(), 0500), 0);
        saveOne(store, "/b", 2);
        EXPECT_THAT(store.entries(), SizeIs(2)) << "remembered until the program ends";
        EXPECT_THAT(VerdictStore(path).entries(), ElementsAre(testing::Key("/a")));
        EXPECT_THAT(platform::listNames(tree.path("Ulvak")), ElementsAre("verdicts.json"));
        ASSERT_EQ(::chmod(tree.path("Ulvak").c_str(), 0700), 0);
        store.remove("/a");
        EXPECT_THAT(VerdictStore(path).entries(), ElementsAre(testing::Key("/b")));
    });
}

/// A file with one label that this user may temporarily not read.
class UnreadableVerdicts : public testing::Test {
protected:
    void SetUp() override {
        if (const auto reason = test::whyNotUnprivileged(tree.path()))
            GTEST_SKIP() << *reason;
    }
    /// Runs `body` as a user subject to permissions, with a store that could not read the file.
    void run(const std::function<void(VerdictStore&)>& body) const {
        test::asUnprivileged([&] {
            {
                VerdictStore before(path);
                saveOne(before, "/before", 1);
            }
            text = textOf(path);
            setMode("", 0);
            VerdictStore store(path);
            EXPECT_TRUE(store.entries().empty());
            body(store);
        });
    }
    void setMode(const std::string& suffix, mode_t mode) const {
        EXPECT_EQ(::chmod((path + suffix).c_str(), mode), 0);
    }
    void expectKept(const std::string& suffix) const {
        setMode(suffix, 0600);
        EXPECT_EQ(textOf(path + suffix), text);
    }

    TempTree tree{{folder("Ulvak")}, TempTree::Owner::unprivileged};
    std::string path = tree.path("Ulvak/verdicts.json");
    mutable std::string text;  ///< the file's content
};

TEST_F(UnreadableVerdicts, AreReadBeforeTheFirstSave) {
    run([&](VerdictStore& store) {
        setMode("", 0600);
        saveOne(store, "/after", 2);
        EXPECT_THAT(store.entries(), ElementsAre(testing::Key("/after"), testing::Key("/before")));
        EXPECT_EQ(VerdictStore(path).entries(), store.entries());
        EXPECT_THAT(platform::listNames(tree.path("Ulvak")), ElementsAre("verdicts.json"));
    });
}

TEST_F(UnreadableVerdicts, AreKeptBesideTheFreshOne) {
    run([&](VerdictStore& store) {
        saveOne(store, "/after", 2);
        EXPECT_THAT(VerdictStore(path).entries(), ElementsAre(testing::Key("/after")));
        expectKept(".old");
        saveOne(store, "/more", 3);
        EXPECT_THAT(VerdictStore(path).entries(), SizeIs(2)) << "what is understood is no reason";
        EXPECT_THAT(platform::listNames(tree.path("Ulvak")),
                    testing::UnorderedElementsAre("verdicts.json", "verdicts.json.old"));
    });
}

TEST_F(UnreadableVerdicts, AreKeptUnderNoNameThatIsTaken) {
    run([&](VerdictStore& store) {
        for (const char* name : {".old", ".old.1", ".old.3"})
            std::ofstream(path + name) << name;
        saveOne(store, "/after", 2);
        expectKept(".old.2");
        for (const char* name : {".old", ".old.1", ".old.3"})
            EXPECT_EQ(textOf(path + name), name);
    });
}

TEST_F(UnreadableVerdicts, AreNotReplacedWhereTheyCannotBeKept) {
    run([&](VerdictStore& store) {
        ASSERT_EQ(::chmod(tree.path("Ulvak").c_str(), 0500), 0);
        saveOne(store, "/after", 2);
        EXPECT_THAT(store.entries(), SizeIs(1)) << "remembered until the program ends";
        ASSERT_EQ(::chmod(tree.path("Ulvak").c_str(), 0700), 0);
        expectKept("");
        store.remove("/absent");
        EXPECT_THAT(VerdictStore(path).entries(), SizeIs(2)) << "as soon as it can be read again";
    });
}

TEST(VerdictStoreDurability, WhatIsNotUnderstoodDoesNotReplaceWhatWasKeptForNotBeingRead) {
    TempTree tree(
        {folder("Ulvak", {test::textFile("verdicts.json", "{"), test::textFile("verdicts.json.old", "{}"),
                          test::textFile("verdicts.json.old.1", "{}")})});
    const std::string path = tree.path("Ulvak/verdicts.json");
    const VerdictStore store(path);
    EXPECT_EQ(textOf(path + ".old"), "{}");
    EXPECT_EQ(textOf(path + ".old.1"), "{}");
    EXPECT_EQ(textOf(path + ".old.2"), "{");
}

TEST(VerdictStoreDurability, WhatBecomesUnintelligibleMeanwhileIsKeptEachTime) {
    TempTree tree({folder("Ulvak")});
    const std::string path = tree.path("Ulvak/verdicts.json");
    VerdictStore store(path);
    saveOne(store, "/a", 1);
    for (const char* text : {"{", "[]"}) {
        std::ofstream(path) << text;
        saveOne(store, text, 1);
    }
    EXPECT_EQ(VerdictStore(path).entries(), store.entries());
    EXPECT_THAT(store.entries(), SizeIs(3));
    EXPECT_EQ(textOf(path + ".old"), "{");
    EXPECT_EQ(textOf(path + ".old.1"), "[]");
}

TEST(VerdictStoreDurability, AFileThatIsNotUnderstoodIsKeptBesideTheFreshOne) {
    const std::string newer = R"({"/a":{"verdict":{"level":"of tomorrow"},"size":1,"date":0}})";
    TempTree tree({folder("Ulvak", {test::textFile("verdicts.json", newer)})});
    VerdictStore store(tree.path("Ulvak/verdicts.json"));
    EXPECT_TRUE(store.entries().empty());
    EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json")), newer) << "until there is something to write";
    store.remove("/absent");
    EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json")), "{}");
    EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json.old")), newer);
    EXPECT_FALSE(std::filesystem::exists(tree.path("Ulvak/verdicts.json.old.1"))) << "kept once";
    EXPECT_TRUE(VerdictStore(tree.path("Ulvak/verdicts.json")).entries().empty());
    EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json.old")), newer) << "what is understood is no reason";
    for (const char* later : {"{", "[]"}) {
        std::ofstream(tree.path("Ulvak/verdicts.json")) << later;
        EXPECT_TRUE(VerdictStore(tree.path("Ulvak/verdicts.json")).entries().empty());
        EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json.old")), newer) << "the first is worth most";
        EXPECT_EQ(textOf(tree.path("Ulvak/verdicts.json.old.1")), later);
    }
}

}  // namespace
}  // namespace ulvak

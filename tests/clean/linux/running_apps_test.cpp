#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "clean/clean_support.h"
#include "support/turkish_locale.h"

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

using Names = std::vector<std::string>;

/// A program that runs for this object's lifetime. It has been executed when the constructor returns.
class RunningProgram {
public:
    explicit RunningProgram(std::vector<std::string> command) {
        std::vector<char*> words;
        for (std::string& word : command)
            words.push_back(word.data());
        words.push_back(nullptr);
        const int failure = ::posix_spawn(&child_, words[0], nullptr, nullptr, words.data(), ::environ);
        EXPECT_EQ(failure, 0) << command[0];
        if (failure == 0)
            awaitCommandLine(command);
    }
    ~RunningProgram() {
        if (child_ <= 0)
            return;
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

private:
    /// The parent resumes shortly before the child's new image is in place; until then, the child's "/proc"
    /// folder shows ours.
    void awaitCommandLine(const std::vector<std::string>& command) {
        std::string expected;
        for (const std::string& word : command)
            expected.append(word).push_back('\0');
        const std::string path = "/proc/" + std::to_string(child_) + "/cmdline";
        while (textOf(path) != expected) {
            if (::waitpid(child_, nullptr, WNOHANG) != 0) {
                ADD_FAILURE() << command[0] << " has ended by itself";
                child_ = 0;
                return;
            }
            ::sched_yield();
        }
    }

    pid_t child_ = 0;
};

/// Adds a program that nobody else runs; it exits after a minute unless killed.
TempTree& withProgram(TempTree& tree, const std::string& path) {
    std::filesystem::copy_file("/bin/sleep", tree.path(path));
    return tree;
}

std::string desktopEntry(const std::string& names, const std::string& command) {
    return "[Desktop Entry]\nType=Application\n" + names + "Exec=" + command + "\n";
}

void addEntry(TempTree& tree, const std::string& id, const std::string& names, const std::string& command) {
    tree.add("home/.local/share/applications", {textFile(id, desktopEntry(names, command))});
}

TempTree& withApplications(TempTree& tree) {
    tree.add("home", {folder(".local", {folder("share", {folder("applications")})}),
                      folder("apps", {folder("bin")})});
    return tree;
}

TEST(RunningApps, FindsADesktopEntryWhoseProgramRuns) {
    TempTree tree(lifelike());
    withProgram(withApplications(tree), "home/apps/bin/ulvak-tries-this");
    addEntry(tree, "org.example.Tried.desktop", "Name=Tried Editor\nName[tr]=Denenen Düzenleyici\n",
             tree.path("home/apps/bin/ulvak-tries-this") + " %U");
    addEntry(tree, "org.example.Other.desktop", "Name=Resting Editor\n", tree.path("home/apps/bin/other"));
    inHome(tree, [&] {
        const Names asked = {"Resting Editor", "tried EDITOR", "TRIED editor"};
        EXPECT_THAT(Cleaner::runningApps(asked), IsEmpty());
        {
            const RunningProgram program({tree.path("home/apps/bin/ulvak-tries-this"), "60"});
            EXPECT_THAT(Cleaner::runningApps(asked), ElementsAre("tried EDITOR", "TRIED editor"));
        }
        EXPECT_THAT(Cleaner::runningApps(asked), IsEmpty()) << "it has ended";
    });
}

TEST(RunningApps, FindsAnApplicationThatWasUpdatedWhileItRuns) {
    TempTree tree(lifelike());
    withProgram(withApplications(tree), "home/apps/bin/ulvak-updated");
    addEntry(tree, "updated.desktop", "Name=Updated\n",
             "env SOME=thing " + tree.path("home/apps/bin/ulvak-updated"));
    inHome(tree, [&] {
        const RunningProgram program({tree.path("home/apps/bin/ulvak-updated"), "60"});
        ASSERT_EQ(::unlink(tree.path("home/apps/bin/ulvak-updated").c_str()), 0);
        EXPECT_THAT(Cleaner::runningApps(Names{"updated"}), ElementsAre("updated"));
    });
}

TEST(RunningApps, FindsAnApplicationThatHidesItsProgram) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root has a program that this user may run and not read";
    TempTree tree(lifelike(), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    withProgram(withApplications(tree), "home/apps/bin/ulvak-hides");
    // Users who may execute but not read a program cannot inspect its process either, as with a password
    // manager.
    ASSERT_EQ(::chmod(tree.path("home/apps/bin/ulvak-hides").c_str(), 0711), 0);
    addEntry(tree, "hides.desktop", "Name=Hidden\n", tree.path("home/apps/bin/ulvak-hides"));
    asUnprivileged([&] {
        const AtHome environment(tree);
        const RunningProgram program({tree.path("home/apps/bin/ulvak-hides"), "60"});
        EXPECT_THAT(Cleaner::runningApps(Names{"hidden"}), ElementsAre("hidden"));
    });
}

TEST(RunningApps, AnotherScriptOfTheSameInterpreterIsAnotherApplication) {
    TempTree tree(lifelike());
    withApplications(tree);
    tree.add("home/apps", {textFile("one.sh", "read -r line\n"), textFile("two.sh", "read -r line\n")});
    addEntry(tree, "one.desktop", "Name=One\n", "/bin/sh " + tree.path("home/apps/one.sh"));
    addEntry(tree, "two.desktop", "Name=Two\n", "/bin/sh " + tree.path("home/apps/two.sh"));
    inHome(tree, [&] {
        // Waits for a line from a pipe that stays open and empty.
        int pipe[2] = {};
        ASSERT_EQ(::pipe(pipe), 0);
        ASSERT_EQ(::dup2(pipe[0], STDIN_FILENO), STDIN_FILENO);
        const RunningProgram program({"/bin/sh", tree.path("home/apps/two.sh")});
        EXPECT_THAT(Cleaner::runningApps(Names{"One", "Two"}), ElementsAre("Two"));
    });
}

TEST(RunningProcesses, AreFoundByTheNameOfTheirProgram) {
    TempTree tree;
    withProgram(tree, "ulvak-system-riscv64");
    const Names asked = {"ulvak-system-*", "ULVAK-system-riscv64", "ulvak-system", "*-riscv"};
    EXPECT_THAT(Cleaner::runningProcesses(asked), IsEmpty());
    {
        const RunningProgram program({tree.path("ulvak-system-riscv64"), "60"});
        EXPECT_THAT(Cleaner::runningProcesses(asked), ElementsAre("ulvak-system-*", "ULVAK-system-riscv64"));
        EXPECT_THAT(Cleaner::runningProcesses(Names{"ulvak-system-ri"}), ElementsAre("ulvak-system-ri"))
            << "as the kernel cuts it";
    }
    EXPECT_THAT(Cleaner::runningProcesses(asked), IsEmpty()) << "it has ended";
}

TEST(RunningProcesses, AreFoundByTheScriptThatAnInterpreterRuns) {
    TempTree tree({textFile("ulvak-script", "read -r line\n")});
    int pipe[2] = {};
    ASSERT_EQ(::pipe(pipe), 0);
    ASSERT_EQ(::dup2(pipe[0], STDIN_FILENO), STDIN_FILENO);
    const RunningProgram program({"/bin/sh", tree.path("ulvak-script")});
    EXPECT_THAT(Cleaner::runningProcesses(Names{"ulvak-script", "ulvak"}), ElementsAre("ulvak-script"));
}

TEST(RunningApps, IgnoresLetterCaseWithoutTurkishRules) {
    const TurkishLocale turkish;
    if (const auto reason = turkish.whyNot())
        GTEST_SKIP() << *reason;
    EXPECT_THAT(
        Cleaner::runningApps(Names{"INKSCAPE", "ıstanbul", "gimp"}, Names{"Inkscape", "ISTANBUL", "GIMP"}),
        ElementsAre("INKSCAPE", "gimp"));
}

TEST(RunningApps, IgnoresTheCaseOfLettersOfOtherLanguages) {
    EXPECT_THAT(Cleaner::runningApps(Names{"ÇİZİM", "yazıcı", "άλφα"}, Names{"çizim", "YAZICI", "ΆΛΦΑ"}),
                ElementsAre("άλφα"));
}

}  // namespace
}  // namespace ulvak

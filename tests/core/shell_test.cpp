#include "core/shell.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace ulvak {
namespace {

Shell::Result sh(const std::string& script, std::stop_token stop = {}) {
    const std::vector<std::string> arguments = {"-c", script};
    auto result = Shell::run("/bin/sh", arguments, std::move(stop));
    EXPECT_TRUE(result.has_value());
    return result.value_or(Shell::Result{.status = -1});
}

TEST(Shell, NonZeroStatusWithoutOutputIsAResult) {
    const Shell::Result result = sh("exit 1");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "");
}

TEST(Shell, CollectsBothStreams) {
    const Shell::Result result = sh("printf 'a\\000b'; printf 'ı\\377' >&2");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, std::string("a\0b", 3));
    EXPECT_EQ(result.error, "ı\uFFFD") << "what is not UTF-8 is repaired";
}

TEST(Shell, FailsOnlyWhenTheProgramCannotBeStarted) {
    const auto missing = Shell::run("/nonexistent/program", {});
    ASSERT_FALSE(missing.has_value());
    EXPECT_EQ(missing.error(), std::errc::no_such_file_or_directory);
    const auto folder = Shell::run("/", {});
    ASSERT_FALSE(folder.has_value());
    EXPECT_EQ(folder.error(), std::errc::permission_denied);
}

TEST(Shell, PassesArgumentsAsTheyAre) {
    const std::vector<std::string> arguments = {"%s|", "a b", "$HOME", "*", "", "'\"\n"};
    const auto result = Shell::run("/usr/bin/printf", arguments);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->output, "a b|$HOME|*||'\"\n|");
}

TEST(Shell, TakesMegabytes) {
    const Shell::Result result = sh("head -c 20000000 /dev/zero");
    EXPECT_EQ(result.output.size(), 20'000'000U);
    EXPECT_EQ(sh("exec >&-; head -c 3000000 /dev/zero | tr '\\0' x >&2").error.size(), 3'000'000U)
        << "standard error may be long once standard output has ended";
}

TEST(Shell, ProgramThatASignalEndsHasItsNumberAsStatus) {
    EXPECT_EQ(sh("kill -SEGV $$").status, SIGSEGV);
}

TEST(Shell, IgnoredSignalsAreNotInherited) {
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(sh("kill -PIPE $$; echo survived").output, "");
}

TEST(Shell, StopKillsTheProgram) {
    std::stop_source source;
    const std::jthread stopper([&] { source.request_stop(); });
    EXPECT_EQ(sh("exec sleep 1000", source.get_token()).status, SIGKILL);
}

TEST(Shell, StopKillsWhatTheProgramHasStartedAndWhatHasClosedItsOutputs) {
    for (const char* script : {"sleep 1000 & wait", "exec >&- 2>&-; sleep 1000"}) {
        std::stop_source source;
        const std::jthread stopper([&] { source.request_stop(); });
        EXPECT_EQ(sh(script, source.get_token()).status, SIGKILL) << script;
    }
}

TEST(Shell, ManyAtOnceDoNotHoldEachOthersPipes) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([i] {
            for (int round = 0; round < 20; ++round)
                EXPECT_EQ(sh("echo " + std::to_string(i)).output, std::to_string(i) + "\n");
        });
    }
}

}  // namespace
}  // namespace ulvak

#include <gtest/gtest.h>
#include <sched.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/process.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::folder;
using test::TempTree;
using test::textFile;

constexpr const char* entry = "[Desktop Entry]\nType=Application\nName=Maps\nName[tr]=Haritalar\nExec=maps\n";

TEST(ApplicationNames, AreThoseOfDesktopEntriesOfSandboxesToo) {
    const TempTree tree({folder(
        ".local",
        {folder(
            "share",
            {folder("flatpak",
                    {folder("exports",
                            {folder("share",
                                    {folder("applications",
                                            {textFile("org.acme.Maps.desktop", entry),
                                             textFile("org.acme.Broken.desktop", "Type=Application"),
                                             textFile("org.acme.Link.desktop",
                                                      "[Desktop Entry]\nType=Link\nName=L\n")})})})})})})});
    test::inChild([&] {
        const test::ScopedEnvironment environment(
            {{"HOME", tree.path()}, {"XDG_DATA_HOME", std::nullopt}, {"LANGUAGE", "C"}});
        const auto names = applicationNames();
        ASSERT_TRUE(names.contains("org.acme.Maps"));
        EXPECT_EQ(names.at("org.acme.Maps"), "Maps");
        EXPECT_FALSE(names.contains("org.acme.Broken"));
        EXPECT_FALSE(names.contains("org.acme.Link"));
    });
}

/// The installed applications by id, with this folder as the home, and no others.
std::map<std::string, InstalledApplication> installedIn(const TempTree& tree) {
    const test::ScopedEnvironment environment({{"HOME", tree.path()},
                                               {"XDG_DATA_HOME", std::nullopt},
                                               {"XDG_DATA_DIRS", tree.path("system")},
                                               {"LANGUAGE", "C"}});
    std::map<std::string, InstalledApplication> byId;
    const auto installed = installedApplications();
    EXPECT_TRUE(installed && installed->isComplete);
    for (const InstalledApplication& application : installed->all)
        byId.emplace(application.id, application);
    return byId;
}

TEST(InstalledApplications, AreEntriesWhoseProgramIsThereAndSandboxes) {
    const std::string header = "[Desktop Entry]\nType=Application\n";
    const TempTree tree(
        {folder(
             "system",
             {folder("applications",
                     {textFile("org.acme.Maps.desktop", entry),
                      textFile("left.desktop", header + "Name=Left\nExec=/nonexistent/left %U\n"),
                      textFile("shell.desktop",
                               header + "Name=Shell\nExec=env A=b /bin/sh /bin/ls\nStartupWMClass=Class\n"),
                      textFile("pac_tool.desktop", header + "Name=Tool\nExec=/bin/ls\n")})}),
         folder(
             ".local",
             {folder(
                 "share",
                 {folder(
                     "flatpak",
                     {folder("app", {folder("org.acme.Terminal")}),
                      folder("exports",
                             {folder("share",
                                     {folder("applications",
                                             {textFile("org.acme.Box.desktop",
                                                       header + "Name=Box\nExec=/bin/sh run "
                                                                "--command=box org.acme.Box\n")})})})})})})});
    test::inChild([&] {
        using Names = std::vector<std::string>;
        const auto installed = installedIn(tree);
        ASSERT_TRUE(installed.contains("org.acme.Maps"));
        EXPECT_EQ(installed.at("org.acme.Maps").programs, Names{"maps"});
        EXPECT_FALSE(installed.at("org.acme.Maps").isRunning);
        EXPECT_FALSE(installed.contains("left")) << "its program was removed by hand";
        ASSERT_TRUE(installed.contains("shell"));
        EXPECT_EQ(installed.at("shell").programs, (Names{"ls", "Class"}));
        ASSERT_TRUE(installed.contains("pac_tool"));
        EXPECT_NE(std::ranges::find(installed.at("pac_tool").programs, "pac"),
                  installed.at("pac_tool").programs.end());
        ASSERT_TRUE(installed.contains("org.acme.Box"));
        EXPECT_EQ(installed.at("org.acme.Box").programs, Names{"box"});
        EXPECT_TRUE(installed.contains("org.acme.Terminal")) << "has no entry";
    });
}

TEST(InstalledApplications, SayWhichRun) {
    TempTree tree({folder("own"), folder("system", {folder("applications")})});
    std::filesystem::copy_file("/bin/sleep", tree.path("own/ulvak-runs"));
    tree.add("system/applications",
             {textFile("runs.desktop", "[Desktop Entry]\nType=Application\nName=Runs\nExec=" +
                                           tree.path("own/ulvak-runs") + " %U\n")});
    test::inChild([&] {
        EXPECT_FALSE(installedIn(tree)["runs"].isRunning);
        std::string program = tree.path("own/ulvak-runs");
        std::string seconds = "60";
        char* words[] = {program.data(), seconds.data(), nullptr};
        pid_t child = 0;
        ASSERT_EQ(::posix_spawn(&child, words[0], nullptr, nullptr, words, ::environ), 0);
        // The parent resumes shortly before the child's new image is in place.
        while (linkTarget("/proc/" + std::to_string(child) + "/exe") != program)
            ::sched_yield();
        EXPECT_TRUE(installedIn(tree)["runs"].isRunning);
        const std::vector<std::string> processes = runningProcesses();
        EXPECT_NE(std::ranges::find(processes, "ulvak-runs"), processes.end());
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    });
}

TEST(HasCommand, LooksWhereCommandsAre) {
    const TempTree tree(
        {folder("bin", {textFile("ulvak-cmd", ""), textFile("ulvak-text", ""), folder("ulvak-dir")}),
         folder(".local", {folder("bin", {textFile("ulvak-own", "")})})});
    for (const char* program : {"bin/ulvak-cmd", ".local/bin/ulvak-own"})
        ASSERT_EQ(::chmod(tree.path(program).c_str(), 0755), 0);
    const test::ScopedEnvironment environment(
        {{"HOME", tree.path()}, {"PATH", "relative::" + tree.path("bin")}});
    EXPECT_EQ(hasCommand("ulvak-cmd"), true);
    EXPECT_EQ(hasCommand("ulvak-own"), true) << "not in PATH";
    EXPECT_EQ(hasCommand("sh"), true) << "not in this PATH either";
    EXPECT_EQ(hasCommand("ulvak-text"), false) << "cannot be executed";
    EXPECT_EQ(hasCommand("ulvak-dir"), false);
    EXPECT_EQ(hasCommand("ulvak-absent"), false);
    EXPECT_EQ(hasCommand("../bin/ulvak-cmd"), false) << "a path";
    EXPECT_EQ(hasCommand(""), false);
}

}  // namespace
}  // namespace ulvak::platform

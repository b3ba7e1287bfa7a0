#include "platform/linux/application_match.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ulvak::platform {
namespace {

using Words = std::vector<std::string>;

const Words shared = {"/bin",       "/usr/bin", "/usr/local/bin", "/usr",
                      "/usr/local", "/usr/lib", "/opt",           "/snap"};

struct Case {
    const char* what;
    ProcessFacts process;
    ApplicationEntry entry;
    bool belongs;
};

const std::vector<Case> cases = {
    {"the program itself",
     {.executable = "/usr/bin/gedit", .words = {"gedit"}},
     {.id = "gedit.desktop", .words = {"gedit", "%U"}, .program = "/usr/bin/gedit"},
     true},
    {"another program of the same folder",
     {.executable = "/usr/bin/gimp", .words = {"gimp"}},
     {.id = "gedit.desktop", .words = {"gedit"}, .program = "/usr/bin/gedit"},
     false},
    {"a longer name",
     {.executable = "/usr/bin/gedit-helper", .words = {"gedit-helper"}},
     {.id = "gedit.desktop", .words = {"gedit"}, .program = "/usr/bin/gedit"},
     false},

    {"flatpak: the unit bears the id",
     {.executable = "/usr/bin/bwrap",
      .words = {"bwrap", "--args", "42", "editor"},
      .unit = "app-flatpak-org.example.Editor-4711.scope"},
     {.id = "org.example.Editor.desktop",
      .words = {"/usr/bin/flatpak", "run", "--command=editor", "org.example.Editor"},
      .program = "/usr/bin/flatpak"},
     true},
    {"flatpak: another application's unit",
     {.executable = "/usr/bin/bwrap",
      .words = {"bwrap", "--args", "42", "editor"},
      .unit = "app-flatpak-org.example.Editor-4711.scope"},
     {.id = "org.example.Edit.desktop",
      .words = {"/usr/bin/flatpak", "run", "org.example.Edit"},
      .program = "/usr/bin/flatpak"},
     false},
    {"a unit with escaped dashes",
     {.executable = "/usr/bin/python3.11", .words = {"python3"}, .unit = "app-gnome-my\\x2dplayer-99.scope"},
     {.id = "my-player.desktop", .words = {"my-player"}},
     true},
    {"a unit with an instance",
     {.executable = "/usr/bin/x", .words = {"x"}, .unit = "app-org.example.Player@1.service"},
     {.id = "org.example.Player.desktop", .words = {"player"}},
     true},
    {"a unit that is no application's",
     {.executable = "/usr/bin/x", .words = {"x"}, .unit = "my-player.service"},
     {.id = "my-player.desktop", .words = {"my-player"}},
     false},
    {"snap: package and command",
     {.executable = "/snap/editor/12/usr/lib/editor-bin",
      .words = {"editor-bin"},
      .unit = "snap.editor.main.0a1b.scope"},
     {.id = "editor_main.desktop", .words = {"/snap/bin/editor.main"}, .program = "/usr/bin/snap"},
     true},
    {"snap: another package",
     {.executable = "/snap/other/12/usr/lib/other-bin",
      .words = {"other-bin"},
      .unit = "snap.other.main.0a1b.scope"},
     {.id = "editor_main.desktop", .words = {"/snap/bin/editor.main"}, .program = "/usr/bin/snap"},
     false},

    {"a wrapper in the path, the program under its name elsewhere",
     {.executable = "/usr/lib/browser/browser", .words = {"/usr/lib/browser/browser"}},
     {.id = "browser.desktop", .words = {"browser", "%u"}, .program = "/usr/bin/browser"},
     true},
    {"an application with a folder of its own in /opt",
     {.executable = "/opt/studio/jre/bin/java",
      .words = {"/opt/studio/jre/bin/java", "-jar", "/opt/studio/s.jar"}},
     {.id = "studio.desktop", .words = {"/opt/studio/bin/studio.sh"}, .program = "/opt/studio/bin/studio.sh"},
     true},
    {"a helper of an application in /opt",
     {.executable = "/opt/browser/crashpad", .words = {"/opt/browser/crashpad"}},
     {.id = "browser.desktop", .words = {"/opt/browser/browser"}, .program = "/opt/browser/browser"},
     true},
    {"another application in /opt",
     {.executable = "/opt/browser2/browser2", .words = {"/opt/browser2/browser2"}},
     {.id = "browser.desktop", .words = {"/opt/browser/browser"}, .program = "/opt/browser/browser"},
     false},
    {"env with a variable before the program",
     {.executable = "/opt/editor/main", .words = {"/opt/editor/main"}},
     {.id = "editor.desktop", .words = {"env", "A=b", "/opt/editor/start"}, .program = "/opt/editor/start"},
     true},
    {"env with options before the program",
     {.executable = "/usr/bin/editor", .words = {"editor"}},
     {.id = "e.desktop",
      .words = {"/usr/bin/env", "-u", "LANG", "-i", "A=b", "editor"},
      .program = "/usr/bin/editor"},
     true},
    {"env says nothing itself",
     {.executable = "/usr/bin/env", .words = {"env"}},
     {.id = "e.desktop", .words = {"env", "A=b", "editor"}, .program = "/usr/bin/editor"},
     false},

    {"a script by its interpreter",
     {.executable = "/usr/bin/python3.11", .words = {"/usr/bin/python3", "/usr/bin/music"}},
     {.id = "music.desktop", .words = {"music"}, .program = "/usr/bin/music"},
     true},
    {"another script of the interpreter",
     {.executable = "/usr/bin/python3.11", .words = {"/usr/bin/python3", "/usr/bin/photos"}},
     {.id = "music.desktop", .words = {"music"}, .program = "/usr/bin/music"},
     false},
    {"the interpreter on both sides, other scripts",
     {.executable = "/usr/bin/python3.11", .words = {"python3", "/usr/share/photos/main.py"}},
     {.id = "music.desktop",
      .words = {"python3", "/usr/share/music/start.py"},
      .program = "/usr/bin/python3.11"},
     false},
    {"an interpreter that runs no file",
     {.executable = "/usr/bin/bash", .words = {"bash"}},
     {.id = "terminal.desktop", .words = {"bash"}, .program = "/usr/bin/bash"},
     false},
    {"a shell and an entry of a shell script",
     {.executable = "/usr/bin/bash", .words = {"-bash"}},
     {.id = "tool.desktop", .words = {"sh", "-c", "tool --window"}, .program = "/usr/bin/dash"},
     false},

    {"a process that tells nothing", {}, {.id = "x.desktop", .words = {"x"}, .program = "/usr/bin/x"}, false},
    {"an entry that tells nothing", {.executable = "/usr/bin/x", .words = {"x"}}, {}, false},
    {"a program that hides and was started by its name alone",
     {.executable = "vault", .words = {"vault"}},
     {.id = "vault.desktop", .words = {"vault"}, .program = "/usr/bin/vault"},
     true},
};

TEST(ApplicationMatch, KnowsWhatBelongsTogether) {
    for (const Case& row : cases)
        EXPECT_EQ(mayBelong(row.process, row.entry, shared), row.belongs) << row.what;
}

TEST(ApplicationMatch, AProgramAmongThoseOfOthersHasNoFolderOfItsOwn) {
    const ApplicationEntry entry{.id = "x.desktop", .words = {"x"}, .program = "/home/u/bin/x"};
    const ProcessFacts process{.executable = "/home/u/bin/y", .words = {"y"}};
    EXPECT_FALSE(mayBelong(process, entry, {"/home/u/bin"}));
}

TEST(ApplicationMatch, ANeighbourInAHomesBinIsAnotherApplication) {
    // The home folder's "bin" need not be in PATH, and the home folder belongs to no application.
    const ApplicationEntry entry{.id = "x.desktop", .words = {"/srv/x"}, .program = "/srv/x"};
    EXPECT_FALSE(mayBelong({.executable = "/srv/other/y", .words = {"y"}}, entry, shared));
}

TEST(ApplicationMatch, KnowsLaunchersWithTheirVersions) {
    for (const char* name : {"bash", "python3", "python3.11", "perl5.36", "flatpak", "node"})
        EXPECT_TRUE(isLauncher(name)) << name;
    for (const char* name : {"bashful", "pythonista", "gedit", "", "7z"})
        EXPECT_FALSE(isLauncher(name)) << name;
}

TEST(ApplicationMatch, FindsTheProgramBehindEnv) {
    EXPECT_EQ(withoutEnvironment({"env", "A=b", "prog", "C=d"}), (Words{"prog", "C=d"}));
    EXPECT_EQ(withoutEnvironment({"/usr/bin/env", "-u", "X", "--", "prog"}), (Words{"prog"}));
    EXPECT_EQ(withoutEnvironment({"prog", "A=b"}), (Words{"prog", "A=b"}));
    EXPECT_EQ(withoutEnvironment({"env"}), Words{});
    EXPECT_EQ(withoutEnvironment({"env", "-u"}), Words{});
    EXPECT_EQ(withoutEnvironment({}), Words{});
}

TEST(ApplicationMatch, AProcessHasTheNamesItMayBeKnownBy) {
    EXPECT_EQ(namesOf({.name = "rclone", .executable = "/usr/bin/rclone", .words = {"rclone", "mount"}}),
              Words{"rclone"});
    EXPECT_EQ(namesOf({.name = "qemu-system-x86", .executable = "/usr/bin/qemu-system-x86_64"}),
              (Words{"qemu-system-x86", "qemu-system-x86_64"}));
    EXPECT_EQ(namesOf({.name = "python3",
                       .executable = "/usr/bin/python3.11",
                       .words = {"python3", "-u", "/usr/bin/lutris"}}),
              (Words{"python3", "python3.11", "lutris"}));
    EXPECT_EQ(namesOf({.name = "java", .executable = "/usr/lib/jvm/bin/java", .words = {"bazel(work)"}}),
              (Words{"java", "bazel(work)"}));
    EXPECT_EQ(namesOf({.name = "chrome",
                       .executable = "/opt/chrome/chrome",
                       .words = {"/opt/chrome/chrome --type=renderer --data=/home/u/code"}}),
              Words{"chrome"})
        << "a command line in one word";
    EXPECT_EQ(namesOf({}), Words());
}

}  // namespace
}  // namespace ulvak::platform

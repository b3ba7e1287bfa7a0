// The program as a user starts it.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "core/shell.h"
#include "core/text.h"
#include "support/environment.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::ScopedEnvironment;
using test::TempTree;

/// Runs a shell line in which "ulvak" is the program.
Shell::Result shell(const std::string& line) {
    const std::vector<std::string> arguments = {"-c", "ulvak() { '" ULVAK_PROGRAM "' \"$@\"; }\n" + line};
    auto result = Shell::run("/bin/sh", arguments);
    EXPECT_TRUE(result.has_value());
    return result.value_or(Shell::Result{.status = -1});
}

/// A home with one finding per level, and the environment that makes it this user's.
class Program : public testing::Test {
protected:
    TempTree tree{
        {folder("ev",
                {folder("Library", {folder("Logs", {file("x", 60'000'000)})}),
                 folder(".npm", {file("x", 70'000'000)}), folder(".rustup", {file("x", 80'000'000)}),
                 folder(".gizemli", {file("x", 310'000'000)}), folder("Belgeler", {file("x", 320'000'000)})}),
         folder("gecici", {folder("T")})}};
    ScopedEnvironment environment{{"HOME", tree.path("ev")},
                                  {"TMPDIR", tree.path("gecici/T")},
                                  {"ULVAK_MODEL_URL", "http://127.0.0.1:9"}};  // none of the user's servers
};

TEST_F(Program, DumpListsEveryLevel) {
    const Shell::Result result = shell("ulvak --dump");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, testing::MatchesRegex(
                                   "Tarandı: 5 dosya, 840(,1)? MB, erişilemeyen: 0, [0-9]+ sn\n\n(.|\n)*"));
    const std::string listing = result.output.substr(result.output.find("\n\n") + 2);
    EXPECT_EQ(listing,
              "== Güvenle silinebilir: 60 MB (1)\n"
              "  60 MB      [Kural] Uygulama kayıtları (log)  —  ~/Library/Logs\n"
              "== Yeniden oluşur: 70 MB (1)\n"
              "  70 MB      [Kural] npm önbelleği  —  ~/.npm\n"
              "== Dikkat: 80 MB (1)\n"
              "  80 MB      [Kural] Rust araç zincirleri  —  ~/.rustup\n"
              "== Bilinmiyor: 310 MB (1)\n"
              "  310 MB     [Kural] .gizemli  —  ~/.gizemli\n"
              "== Dokunma: 320 MB (1)\n"
              "  320 MB     [Kural] x  —  ~/Belgeler/x\n");
}

TEST_F(Program, OutputDoesNotDependOnTheLocale) {
    const std::string plain = shell("LC_ALL=C ulvak --dump | sed 1d").output;
    EXPECT_FALSE(plain.empty());
    for (const char* locale : {"tr_TR.UTF-8", "C.UTF-8", "nonsense", ""})
        EXPECT_EQ(
            shell(std::string("LANG='") + locale + "' LC_ALL='" + locale + "' ulvak --dump | sed 1d").output,
            plain)
            << locale;
}

TEST_F(Program, HomeMayEndInASlash) {
    const std::string plain = shell("ulvak --dump | sed 1d").output;
    EXPECT_EQ(shell("HOME=$HOME// ulvak --dump | sed 1d").output, plain);
}

TEST_F(Program, ScanWithoutAHomeStillEndsWell) {
    for (const char* home : {"/nonexistent", "", "relative/path"}) {
        const Shell::Result result = shell(std::string("HOME='") + home + "' ulvak --dump");
        EXPECT_EQ(result.status, 0) << home;
        EXPECT_TRUE(result.output.starts_with("Tarandı: ")) << home;
    }
}

TEST_F(Program, ReaderThatGoesAwayIsNoError) {
    EXPECT_EQ(shell("{ ulvak --dump; echo $? >&2; } | head -c 1").error, "0\n");
    EXPECT_EQ(shell("ulvak --dump >&-").status, 0);
    EXPECT_EQ(shell("ulvak --dump <&- >&- 2>&-").status, 0);
    EXPECT_EQ(shell("ulvak --dump > /dev/full").status, 0);
}

TEST_F(Program, AskedForTheModelEndsWithItsStatus) {
    const Shell::Result result = shell("ULVAK_MODEL_OFF=1 ulvak --dump --ai");
    EXPECT_EQ(result.status, 0);
    const std::size_t status = result.output.find("\n\nAI: ");
    ASSERT_NE(status, std::string::npos);
    EXPECT_THAT(result.output.substr(status + 2),
                testing::MatchesRegex("AI: unavailable\\(\"[^\"\n]+\"\\)\n"));
}

TEST_F(Program, HelpAndVersionGoToStandardOutput) {
    const Shell::Result help = shell("ulvak --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.starts_with("Kullanım: ulvak "));
    EXPECT_EQ(help.error, "");
    const Shell::Result version = shell("ulvak --version");
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("ulvak [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, UnknownOptionIsSaidAndLeadsToHelp) {
    const Shell::Result result = shell("ulvak --temizle");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.error.contains("--temizle"));
    EXPECT_TRUE(result.error.contains("--help"));
    const Shell::Result dump = shell("ulvak --dump --temizle");
    EXPECT_EQ(dump.status, 0);
    EXPECT_TRUE(dump.output.starts_with("Tarandı: "));
}

TEST_F(Program, HostileNamesStayOneLineEach) {
    tree.add("ev", {folder(".a\n  1 GB [Kural] sahte  —  ~", {file("x", 330'000'000)}),
                    folder(".b\x1b]0;x\x07\xff\xfe", {file("x", 340'000'000)}),
                    folder(".-rf *", {file("x", 350'000'000)})});
    const Shell::Result result = shell("ulvak --dump");
    EXPECT_EQ(printable(replacedAll(result.output, "\n", "|")), replacedAll(result.output, "\n", "|"))
        << "nothing in it needs to be made harmless";
    EXPECT_TRUE(result.output.contains("[Kural] .a\uFFFD  1 GB [Kural] sahte  —  ~  —  ~/.a\uFFFD"));
    EXPECT_TRUE(result.output.contains("[Kural] .b\uFFFD]0;x\uFFFD\uFFFD\uFFFD  —  "));
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 2 + 5 + 5 + 3);
}

#ifndef ULVAK_SANITIZED
// The sanitizers reserve more memory than any limit allows.
TEST_F(Program, WithoutEnoughMemoryItSaysSoAndEnds) {
    const std::string deep(200, 'n');
    TempTree many;
    many.addChain(deep, 10'000, {file("bottom", 60'000'000)});
    const ScopedEnvironment home{{"HOME", many.path()}};
    int withoutMemory = 0;
    for (int limit = 20'000; limit <= 160'000; limit += 10'000) {
        const Shell::Result result = shell("ulimit -v " + std::to_string(limit) + "; ulvak --dump");
        // The dynamic linker exits with 127 if even the program does not fit.
        ASSERT_THAT(result.status, testing::AnyOf(0, 1, 127)) << limit << ": " << result.error;
        if (result.status == 1) {
            EXPECT_EQ(result.output, "");
            EXPECT_EQ(result.error, "ulvak: tarama tamamlanamadı: bellek yetmedi\n");
            ++withoutMemory;
        }
    }
    EXPECT_GT(withoutMemory, 0);
}
#endif

/// Everything a scan must leave unchanged, by path, including the folder itself.
std::map<std::string, std::vector<std::int64_t>> state(const std::string& path) {
    std::map<std::string, std::vector<std::int64_t>> result = {{path, test::stateOf(path)}};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
        result[entry.path()] = test::stateOf(entry.path());
    return result;
}

TEST_F(Program, DumpChangesNothing) {
    // What the window would set aside or rewrite, and where programs keep their data.
    tree.add("ev", {folder("veri", {folder("Ulvak", {test::textFile("verdicts.json", "bozuk")})}),
                    folder("ayar"), folder("durum"), folder("onbellek"), folder("calisma")});
    const ScopedEnvironment folders{{"XDG_DATA_HOME", tree.path("ev/veri")},
                                    {"XDG_CONFIG_HOME", tree.path("ev/ayar")},
                                    {"XDG_STATE_HOME", tree.path("ev/durum")},
                                    {"XDG_CACHE_HOME", tree.path("ev/onbellek")},
                                    {"XDG_RUNTIME_DIR", tree.path("ev/calisma")}};
    auto before = state(tree.path());
    EXPECT_EQ(shell("cd \"$HOME\" && ulvak --dump --ai").status, 0);
    auto after = state(tree.path());
#ifdef ULVAK_THREAD_SANITIZER
    // It creates a temporary file at startup and removes it again.
    before.erase(tree.path("gecici/T"));
    after.erase(tree.path("gecici/T"));
#endif
    EXPECT_EQ(after, before);
}

TEST_F(Program, DumpSpeaksToNobodyOnTheSessionsBus) {
    const std::string path = tree.path("gecici/bus");
    const int bus = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::fcntl(bus, F_SETFL, O_NONBLOCK), 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(bus, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(bus, 1), 0);
    EXPECT_EQ(shell("DBUS_SESSION_BUS_ADDRESS='unix:path=" + path + "' ulvak --dump").status, 0);
    EXPECT_EQ(::accept(bus, nullptr, nullptr), -1) << "somebody has called";
    ::close(bus);
}

TEST_F(Program, TheWindowsProgramIsToldOfNoRelativeFolder) {
    std::filesystem::copy_file(ULVAK_PROGRAM, tree.path("ulvak"));
    tree.add("", {test::textFile("ulvak-window", "#!/bin/sh\nenv\n").withMode(0755)});
    const std::string ulvak = "'" + tree.path("ulvak") + "'";
    for (const char* name : {"HOME", "TMPDIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
        const std::string variable = std::string("\n") + name + "=";
        for (const char* relative : {"", "data", "./data", "~/.local/share"}) {
            const std::string set = std::string(name) + "='" + relative + "' ";
            EXPECT_FALSE(("\n" + shell(set + ulvak).output).contains(variable)) << set;
        }
        const std::string set = std::string(name) + "='" + tree.path() + "' ";
        EXPECT_TRUE(("\n" + shell(set + ulvak).output).contains(variable + tree.path() + "\n")) << set;
    }
}

TEST_F(Program, WithoutTheWindowsProgramItSaysSo) {
    // Away from the build folder there is no window program beside it.
    std::filesystem::copy_file(ULVAK_PROGRAM, tree.path("ulvak"));
    for (const char* options : {"", " --ai", " --level=safe --autoscan --select-first"}) {
        const Shell::Result result = shell("'" + tree.path("ulvak") + "'" + options);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.error.contains("ulvak-window")) << result.error;
        EXPECT_TRUE(result.error.contains("--dump"));
    }
}

TEST_F(Program, InstalledItOpensTheWindowAmongWhatNobodyStartsByHand) {
    tree.add("", {folder("bin"), folder("libexec", {folder("ulvak")})});
    std::filesystem::copy_file(ULVAK_PROGRAM, tree.path("bin/ulvak"));
    const std::string window = tree.path("libexec/ulvak/ulvak-window");
    std::ofstream(window) << "#!/bin/sh\necho \"pencere: $*\"\n";

    const Shell::Result refused = shell("'" + tree.path("bin/ulvak") + "' --autoscan");
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.error.contains("libexec/ulvak/ulvak-window: Permission denied")) << refused.error;

    std::filesystem::permissions(window, std::filesystem::perms::owner_all);
    const Shell::Result opened = shell("'" + tree.path("bin/ulvak") + "' --autoscan");
    EXPECT_EQ(opened.status, 0);
    EXPECT_EQ(opened.output, "pencere: --autoscan\n");
}

TEST_F(Program, WindowBesideItThatCannotBeStartedIsNamed) {
    tree.add("", {folder("bin", {test::textFile("ulvak-window", "")})});
    std::filesystem::copy_file(ULVAK_PROGRAM, tree.path("bin/ulvak"));
    const Shell::Result result = shell("'" + tree.path("bin/ulvak") + "'");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.error.contains("/bin/ulvak-window: ")) << result.error;
    EXPECT_FALSE(result.error.contains("libexec")) << result.error;
}

}  // namespace
}  // namespace ulvak

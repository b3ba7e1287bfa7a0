#include "ai/folder_owner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ai/fact_world.h"
#include "support/environment.h"

namespace ulvak {
namespace {

using namespace test;
using FolderOwner::Facts;
using platform::InstalledApplication;
using platform::InstalledApplications;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Kind = FolderOwner::Facts::Kind;

constexpr std::size_t maxNames = 200;

const std::vector<InstalledApplication>& desktop() {
    static const std::vector<InstalledApplication> all = {
        {.id = "code", .names = {"Visual Studio Code"}, .programs = {"code", "Code"}},
        {.id = "com.brave.Browser", .names = {"Brave"}, .programs = {"brave-browser"}},
        {.id = "com.jetbrains.IntelliJ-IDEA-Community",
         .names = {"IntelliJ IDEA Community Edition"},
         .programs = {"jetbrains-idea-ce"}},
        {.id = "firefox-esr",
         .names = {"Firefox ESR"},
         .programs = {"firefox-esr", "firefox"},
         .isRunning = true},
        {.id = "google-chrome", .names = {"Google Chrome"}, .programs = {"google-chrome-stable"}},
        {.id = "libreoffice-calc", .names = {"LibreOffice Calc"}, .programs = {"libreoffice"}},
        {.id = "libreoffice-writer", .names = {"LibreOffice Writer"}, .programs = {"libreoffice"}},
        {.id = "org.gnome.Maps", .names = {"Haritalar", "Maps"}, .programs = {"gnome-maps"}},
        {.id = "org.mozilla.Thunderbird", .names = {"Thunderbird Mail"}, .programs = {"thunderbird"}},
        {.id = "Some Game", .names = {"Some Game"}, .programs = {"steam"}},
        {.id = "spotify_spotify", .names = {"Spotify"}, .programs = {"spotify"}},
        {.id = "steam", .names = {"Steam"}, .programs = {"steam"}},
    };
    return all;
}

/// "app Firefox", "command ulvak-tool", "absent x", "unsure".
std::string told(const Facts& facts) {
    const std::string running = facts.isRunning ? ", running" : "";
    switch (facts.kind) {
        case Kind::app:
            return "app " + facts.name + running;
        case Kind::command:
            return "command " + facts.name + running;
        case Kind::absent:
            return "absent " + facts.name + running;
        case Kind::unsure:
            return "unsure" + running;
    }
    return {};
}

class FolderOwners : public testing::Test {
protected:
    /// What is known of the owner of a folder in the home.
    [[nodiscard]] std::string of(const std::string& relative) const {
        const auto folder = FolderOwner::ownedFolder(world.home(relative), world.around.folders);
        return folder ? told(FolderOwner::facts(*folder, installed, maxNames)) : "nobody";
    }

    FactWorld world;
    InstalledApplications installed{.all = desktop(), .processes = {}};
};

TEST_F(FolderOwners, AreCalledLikeTheirFolders) {
    const std::pair<const char*, const char*> rows[] = {
        {".thunderbird", "app Thunderbird Mail"},
        {".thunderbird/abc.default/ImapMail", "app Thunderbird Mail"},
        {".config/Code", "app Visual Studio Code"},
        {".config/Code/Cache", "app Visual Studio Code"},
        {".cache/google-chrome", "app Google Chrome"},
        {".config/Google/google-chrome", "app Google Chrome"},
        {".local/share/org.gnome.Maps", "app Haritalar"},
        {".cache/gnome-maps", "app Haritalar"},
        {".local/state/spotify", "app Spotify"},
        {".steam", "app Steam"},
        {".cache/mozilla/firefox", "app Firefox ESR, running"},
        {".cache/JetBrains/IntelliJIdea2024.1", "app IntelliJ IDEA Community Edition"},
        {".config/IntelliJIdea2024.1", "app IntelliJ IDEA Community Edition"},
        {".config/firefox", "app Firefox ESR, running"},
    };
    for (const auto& [path, expected] : rows)
        EXPECT_EQ(of(path), expected) << path;
}

TEST_F(FolderOwners, OfSandboxesAreThePackagesThemselves) {
    EXPECT_EQ(of(".var/app/org.mozilla.Thunderbird/.thunderbird"), "app Thunderbird Mail");
    EXPECT_EQ(of("snap/spotify/common/.cache"), "app Spotify");
    EXPECT_EQ(of(".var/app/com.example.UlvakGone"), "absent UlvakGone");
    EXPECT_EQ(of("snap/ulvak-gone"), "absent ulvak-gone");
    EXPECT_EQ(of("snap/steam"), "unsure") << "another kind of package has taken its place";
    EXPECT_EQ(of(".var/app/com.google.chrome"), "unsure");
}

TEST_F(FolderOwners, MayBeToldByWhatIsInside) {
    world.tree.add("home", {folder(".mozilla", {folder("extensions"), folder("firefox")}),
                            folder(".cache", {folder("BraveSoftware", {folder("Brave-Browser")}),
                                              folder("mixed", {folder("steam"), folder("spotify")})})});
    EXPECT_EQ(of(".mozilla"), "app Firefox ESR, running");
    EXPECT_EQ(of(".cache/BraveSoftware"), "app Brave");
    EXPECT_EQ(of(".cache/mixed"), "unsure");
}

TEST_F(FolderOwners, AreNotGuessedWhereSeveralOrNoneIsSure) {
    EXPECT_EQ(of(".config/libreoffice"), "app LibreOffice Calc") << "it has that program";
    installed.all.erase(std::remove_if(installed.all.begin(), installed.all.end(),
                                       [](const auto& app) { return app.id == "libreoffice-calc"; }),
                        installed.all.end());
    EXPECT_EQ(of(".config/libreo"), "absent libreo") << "part of a word";
    EXPECT_EQ(of(".config/steam-ulvak"), "unsure") << "may be another's";
    EXPECT_EQ(of(".mozilla"), "unsure") << "a maker's";
    EXPECT_EQ(of(".config/Google/Chrome"), "unsure") << "a word of another name";
    EXPECT_EQ(of(".vs"), "unsure") << "too short to be missed";
    EXPECT_EQ(of(".config/codeulvak"), "absent codeulvak");
}

TEST_F(FolderOwners, AreAbsentOnlyIfEverythingWasLookedThrough) {
    EXPECT_EQ(of(".config/ulvak-gone"), "absent ulvak-gone");
    installed.isComplete = false;
    EXPECT_EQ(of(".config/ulvak-gone"), "unsure");
    installed.isComplete = true;
    installed.processes = {"sh", "Ulvak-Gone"};
    EXPECT_EQ(of(".config/ulvak-gone"), "unsure, running") << "never installed, and yet there";
}

TEST_F(FolderOwners, WithTheirProgramInTheFolderMayBeThere) {
    world.tree.add("home",
                   {folder(".ulvaknvm", {file("ulvaknvm.sh")}), folder(".ulvakenv", {folder("bin")})});
    EXPECT_EQ(of(".ulvaknvm"), "unsure");
    EXPECT_EQ(of(".ulvakenv"), "unsure");
}

TEST_F(FolderOwners, MayBeCommands) {
    world.tree.add("home", {folder("tools", {textFile("ulvak-tool", ""), textFile("ulvak-text", "")}),
                            folder(".local", {folder("bin", {textFile("ulvak-own", "")})})});
    for (const char* program : {"tools/ulvak-tool", ".local/bin/ulvak-own"})
        ASSERT_EQ(::chmod(world.home(program).c_str(), 0755), 0);
    const ScopedEnvironment environment({{"PATH", world.home("tools")}, {"HOME", world.home("")}});
    EXPECT_EQ(of(".ulvak-tool"), "command ulvak-tool");
    EXPECT_EQ(of(".cache/Ulvak-Tool"), "command ulvak-tool");
    EXPECT_EQ(of(".config/ulvak-own"), "command ulvak-own") << "where the path of a session may not lead";
    EXPECT_EQ(of(".cache/ulvak-text"), "absent ulvak-text") << "not a program";
    installed.processes = {"ulvak-tool"};
    EXPECT_EQ(of(".ulvak-tool"), "command ulvak-tool, running");
}

TEST_F(FolderOwners, AreNobodyWhereManyShareAFolder) {
    for (const char* path :
         {"", "Documents", "Documents/Code", ".config", ".cache", ".local", ".local/share", ".var",
          ".var/app", "snap", ".config/autostart", ".cache/thumbnails/large", ".ssh",
          ".local/share/Trash/files", ".local/bin/steam", ".config/google", ".Config"})
        EXPECT_EQ(of(path), "nobody") << path;
}

TEST_F(FolderOwners, AreTheSameInMovedFolders) {
    world.around.folders.userCache = "/moved/cache";
    world.around.folders.userConfig = world.home("settings");
    const auto owner = [&](const std::string& path) {
        const auto folder = FolderOwner::ownedFolder(path, world.around.folders);
        return folder ? told(FolderOwner::facts(*folder, installed, maxNames)) : "nobody";
    };
    EXPECT_EQ(owner("/moved/cache/google-chrome/Default"), "app Google Chrome");
    EXPECT_EQ(owner("/moved/cache"), "nobody");
    EXPECT_EQ(of("settings/Code"), "app Visual Studio Code");
    EXPECT_EQ(of(".cache/steam"), "app Steam") << "left in the usual place";
}

// In the text

TEST(FolderContext, WithListedApplicationsTheOwnersLinesNameWhatIsThere) {
    FactWorld world({folder("src", {folder("ulvak-gone", {file("Makefile")})})}, {folder("Thunderbird.app")});
    InstalledApplications installed{.all = desktop(), .processes = {}};
    installed.all.push_back(
        {.id = "x", .names = {"Bad \"Name\""}, .programs = {"ulvak-bad"}, .isRunning = true});
    world.around.installed = std::make_shared<const InstalledApplications>(installed);
    EXPECT_THAT(world.build(world.finding(".thunderbird"), "", {"thunderbird"}),
                AllOf(HasSubstr("Hint: the app \"Thunderbird Mail\" is installed, so this folder most likely "
                                "belongs to it."),
                      Not(HasSubstr("running")), Not(HasSubstr("/Applications"))));
    EXPECT_THAT(world.build(world.finding(".cache/mozilla/firefox")),
                HasSubstr("Hint: \"Firefox ESR\" is currently running."));
    EXPECT_THAT(world.build(world.finding(".ulvak-bad")),
                HasSubstr("Hint: \"Bad 'Name'\" is currently running."));
    EXPECT_THAT(
        world.build(world.finding(".config/ulvak-gone")),
        AllOf(HasSubstr("Hint: no app or command line tool named \"ulvak-gone\" is installed (it may be "
                        "part of something else or of a removed app)."),
              HasSubstr("with the same name at ~/src/ulvak-gone.")));
    EXPECT_THAT(world.build(world.finding("Documents")), Not(HasSubstr("Hint:")));
}

TEST(FolderContext, AHomeWithALibraryIsDescribedByTheFolderOfApplications) {
    using FolderContext::Applications;
    const FactWorld with({folder("Library", {folder("Caches")})});
    EXPECT_EQ(Applications::ofThisMachine(with.around.folders).installed, nullptr);
    const FactWorld without({folder("Library", {folder("Books"), file("Logs")})});
    EXPECT_EQ(Applications::ofThisMachine(without.around.folders).installed != nullptr,
              platform::installedApplications().has_value());
}

}  // namespace
}  // namespace ulvak

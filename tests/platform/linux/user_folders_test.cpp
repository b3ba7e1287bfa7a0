#include "platform/user_folders.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <optional>
#include <string>

#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::ScopedEnvironment;

const std::optional<std::string> unset;

std::string homeInPasswd() {
    const passwd* entry = ::getpwuid(::getuid());
    return entry == nullptr ? "/nonexistent" : entry->pw_dir;
}

TEST(UserFolders, HomeIsWhereTheEnvironmentSays) {
    for (const std::string home : {"/home/ayse", "/", "/home//ayse", "/home/ayse//", "/ev/çağrı", "/\xff"}) {
        const ScopedEnvironment environment({{"HOME", home}});
        EXPECT_EQ(homeDirectory(), home) << "as the system spells it";
    }
}

TEST(UserFolders, HomeThatIsUnsetEmptyOrRelativeIsTheOneInThePasswdEntry) {
    for (const auto& home : {unset, std::optional<std::string>(""), std::optional<std::string>("."),
                             std::optional<std::string>("home/ayse"), std::optional<std::string>("~")}) {
        const ScopedEnvironment environment({{"HOME", home}});
        EXPECT_EQ(homeDirectory(), homeInPasswd()) << home.value_or("(unset)");
    }
}

TEST(UserFolders, AUserWhomTheSystemDoesNotKnowHasNobodyElsesHome) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root becomes another user";
    test::inChild([] {
        const ScopedEnvironment environment({{"HOME", unset}});
        // A container may not map ids above 16 bits.
        uid_t nobodyAtAll = 60'000;
        while (::getpwuid(nobodyAtAll) != nullptr)
            ++nobodyAtAll;
        ASSERT_EQ(::setresuid(nobodyAtAll, nobodyAtAll, nobodyAtAll), 0);
        EXPECT_EQ(homeDirectory(), "/nonexistent");
    });
}

TEST(UserFolders, TemporaryFolderIsWhereTheEnvironmentSays) {
    for (const std::string temp : {"/var/tmp", "/var/folders/ab/cd/T/", "/home/ayse/tmp", "/geçici"}) {
        const ScopedEnvironment environment({{"TMPDIR", temp}});
        EXPECT_EQ(temporaryDirectory(), temp);
    }
}

TEST(UserFolders, TemporaryFolderThatIsUnsetEmptyOrRelativeIsTheSystems) {
    for (const auto& temp : {unset, std::optional<std::string>(""), std::optional<std::string>("tmp"),
                             std::optional<std::string>("./tmp"), std::optional<std::string>("..")}) {
        const ScopedEnvironment environment({{"TMPDIR", temp}});
        EXPECT_EQ(temporaryDirectory(), "/tmp") << temp.value_or("(unset)");
    }
}

TEST(UserFolders, TheWholeDiskIsNeverTheTemporaryFolder) {
    for (const std::string temp :
         {"/", "//", "///", "/.", "/./", "//.//", "/..", "/tmp/..", "/tmp/../", "/a/../.."}) {
        const ScopedEnvironment environment({{"TMPDIR", temp}});
        EXPECT_EQ(temporaryDirectory(), "/tmp") << temp;
    }
}

TEST(UserFolders, ALinkToTheWholeDiskIsNotTheTemporaryFolder) {
    const test::TempTree tree(
        {test::link("root", "/"), test::link("again", "root"), test::folder("a"), test::link("inside", "a")});
    for (const char* name : {"root", "again", "root/.", "root/usr/.."}) {
        const ScopedEnvironment environment({{"TMPDIR", tree.path(name)}});
        EXPECT_EQ(temporaryDirectory(), "/tmp") << name;
    }
    const ScopedEnvironment environment({{"TMPDIR", tree.path("inside")}});
    EXPECT_EQ(temporaryDirectory(), tree.path("inside"));
}

TEST(UserFolders, ThereIsNoCacheFolderApartFromTheTemporaryOne) {
    const ScopedEnvironment environment({{"XDG_CACHE_HOME", "/home/ayse/.cache"}});
    EXPECT_EQ(cacheDirectory(), std::nullopt);
}

TEST(UserFolders, ApplicationsKeepTheirDataWhereTheEnvironmentSays) {
    for (const std::string data : {"/data", "/data/", "/veri/çağrı", "/\xff"}) {
        const ScopedEnvironment environment({{"XDG_DATA_HOME", data}});
        EXPECT_EQ(applicationSupportDirectory("/home/ayse"), data) << "as the system spells it";
    }
}

TEST(UserFolders, ApplicationsKeepTheirDataInTheHomeFolderUnlessTheEnvironmentNamesAnAbsolutePlace) {
    for (const auto& data : {unset, std::optional<std::string>(""), std::optional<std::string>("data"),
                             std::optional<std::string>("./data"), std::optional<std::string>("~/data")}) {
        const ScopedEnvironment environment({{"XDG_DATA_HOME", data}});
        EXPECT_EQ(applicationSupportDirectory("/home/ayse"), "/home/ayse/.local/share")
            << data.value_or("(unset)");
    }
}

TEST(UserFolders, TrashLiesWithTheUsersData) {
    const ScopedEnvironment environment({{"XDG_DATA_HOME", "/data"}});
    EXPECT_EQ(trashDirectory("/home/ayse"), "/data/Trash");
}

TEST(UserFolders, TrashLiesInTheHomeFolderUnlessTheEnvironmentNamesAnAbsolutePlace) {
    for (const auto& data : {unset, std::optional<std::string>(""), std::optional<std::string>("data"),
                             std::optional<std::string>("~/data")}) {
        const ScopedEnvironment environment({{"XDG_DATA_HOME", data}});
        EXPECT_EQ(trashDirectory("/home/ayse"), "/home/ayse/.local/share/Trash") << data.value_or("(unset)");
    }
}

}  // namespace
}  // namespace ulvak::platform

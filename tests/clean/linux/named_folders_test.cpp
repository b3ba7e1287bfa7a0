#include <gtest/gtest.h>

#include "clean/clean_support.h"

// Home folders named in the user's language.

namespace ulvak {
namespace {

using namespace test;

TEST(Cleaner, FoldersNamedInTheUsersLanguageAndKeysAreProtected) {
    TempTree tree(lifelike());
    tree.add("home",
             {folder("Belgeler", {textFile("tez", "t")}), folder(".ssh", {textFile("id", "k")}),
              folder(".config", {textFile("user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Belgeler\"\n")})});
    inHome(tree, [&] {
        for (const char* kept : {"home/Belgeler", "home/.ssh", "home/.ssh/id", "home/.config"}) {
            const auto freed = cleaner().clean(finding({tree.path(kept)}), CleanMode::trash);
            ASSERT_FALSE(freed) << kept;
            EXPECT_TRUE(std::holds_alternative<CleanError>(freed.error())) << kept;
            EXPECT_TRUE(exists(tree.path(kept)));
        }
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/Belgeler/tez")}), CleanMode::permanent));
    });
}

}  // namespace
}  // namespace ulvak

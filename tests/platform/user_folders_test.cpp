#include "platform/user_folders.h"

#include <gtest/gtest.h>

#include <string>

namespace ulvak::platform {
namespace {

TEST(UserFolders, AreAllAbsolute) {
    const std::string home = homeDirectory();
    EXPECT_TRUE(home.starts_with('/')) << home;
    EXPECT_TRUE(temporaryDirectory().starts_with('/')) << temporaryDirectory();
    EXPECT_NE(temporaryDirectory(), "/");
    EXPECT_TRUE(cacheDirectory().value_or("/").starts_with('/'));
    EXPECT_TRUE(applicationSupportDirectory("/ev").starts_with('/'));
    EXPECT_TRUE(trashDirectory("/ev").starts_with('/'));
}

}  // namespace
}  // namespace ulvak::platform

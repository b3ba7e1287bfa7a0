#include <gtest/gtest.h>

#include "platform/desktop.h"
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

}  // namespace
}  // namespace ulvak::platform

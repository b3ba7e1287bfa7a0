#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "clean/cleaner.h"
#include "support/environment.h"
#include "support/findings.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

/// Shared by the tests of cleaning.
namespace ulvak::test {

/// A home, a temporary folder and their surroundings.
inline std::vector<TreeEntry> lifelike() {
    return {
        folder(
            "home",
            {folder("Documents", {textFile("old.zip", "x")}),
             folder("proje", {folder("build", {textFile("a.o", "a"), folder("inner", {textFile("b", "b")})}),
                              textFile("main.c", "c")}),
             textFile("one", "1"), textFile("two", "2"), textFile("three", "3"),
             folder("Library", {folder("Keychains", {textFile("login", "k")}),
                                folder("Caches", {folder("app", {textFile("c", "c")})})})}),
        folder("tmp", {folder("thing", {textFile("t", "t")})}),
        folder("canaries", {textFile("canary", "alive")}),
    };
}

/// The environment of a user whose folders are "home" and "tmp" in a tree.
class AtHome {
public:
    explicit AtHome(const TempTree& tree)
        : environment_({{"HOME", tree.path("home")},
                        {"TMPDIR", tree.path("tmp")},
                        {"XDG_DATA_HOME", std::nullopt},
                        {"XDG_CONFIG_HOME", std::nullopt},
                        {"LANG", "C.UTF-8"}}) {}

private:
    ScopedEnvironment environment_;
};

/// Runs the body in that environment.
inline void inHome(const TempTree& tree, const Body& body) {
    const AtHome environment(tree);
    body();
}

/// For the user this environment belongs to.
inline Cleaner cleaner(Cleaner::Services services = Cleaner::Services::system()) {
    return Cleaner(UserFolders::ofCurrentUser(), std::move(services));
}

inline Finding finding(std::vector<std::string> urls, std::int64_t size = 4096) {
    return asFound({.urls = std::move(urls), .size = size});
}

/// The system's services, for a home whose Trash counts as the desktop's; the emptying program does not
/// exist.
inline Cleaner::Services withDesktopsTrash() {
    Cleaner::Services services = Cleaner::Services::system();
    services.trashEmptyingCommand = [](const std::string& trash) {
        return platform::Command{.program = "/desktop", .arguments = {"empty", trash}};
    };
    return services;
}

/// Makes the Trash a link, which must never be followed.
inline void makeTrashALink(const TempTree& tree) {
    const std::filesystem::path trash = UserFolders::ofCurrentUser().trash;
    std::filesystem::create_directories(trash.parent_path());
    std::filesystem::create_directory_symlink(tree.path("canaries"), trash);
}

inline std::string text(const CleanFailure& failure) {
    return errorDescription(failure, UserFolders::ofCurrentUser());
}

}  // namespace ulvak::test

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

// What holds for the source files themselves, and what no compiler would notice.

namespace ulvak {
namespace {

namespace fs = std::filesystem;

struct Source {
    std::string path;  ///< from the project's folder on
    std::string text;
};

std::vector<Source> sources(const std::vector<std::string>& folders) {
    static const std::set<std::string> kinds = {".cpp",   ".h",   ".mm",    ".m",
                                                ".swift", ".txt", ".cmake", ".qml"};
    const fs::path project = ULVAK_SOURCE_DIR;
    std::vector<Source> found;
    for (const std::string& folder : folders) {
        if (!fs::exists(project / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(project / folder)) {
            if (!entry.is_regular_file() || !kinds.contains(entry.path().extension().string()))
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            found.push_back({.path = entry.path().lexically_relative(project).generic_string(),
                             .text = {std::istreambuf_iterator<char>(file), {}}});
        }
    }
    std::ranges::sort(found, {}, &Source::path);
    return found;
}

bool liesIn(const Source& source, const std::string& folder) {
    return source.path.starts_with(folder + "/");
}

TEST(Layout, TheSourcesAreThere) {
    EXPECT_GT(sources({"src"}).size(), 30U);
}

TEST(Layout, QtAppearsOnlyInTheApplicationAndItsInterface) {
    const std::regex qt(R"(\bQt|#include [<"]Q|\bQ_|\bQML_)");
    for (const Source& source : sources({"src"})) {
        if (!liesIn(source, "src/app") && !liesIn(source, "src/ui") && source.path != "src/main.cpp") {
            EXPECT_FALSE(std::regex_search(source.text, qt)) << source.path;
        }
    }
}

TEST(Layout, OnlyThePlatformFolderAsksForTheSystem) {
    const std::regex system(
        "__APP"
        "LE__|__lin"
        "ux__|TARGET_"
        "OS_");
    for (const Source& source : sources({"src", "tests", "bench", "fuzz"})) {
        if (!liesIn(source, "src/platform")) {
            EXPECT_FALSE(std::regex_search(source.text, system)) << source.path;
        }
    }
}

TEST(Layout, FoldersIncludeOnlyWhatStandsBelowThem) {
    const std::map<std::string, std::set<std::string>> below = {
        {"platform", {}},
        {"core", {"platform"}},
        {"classify", {"platform", "core"}},
        {"scan", {"platform", "core", "classify"}},
        {"ai", {"platform", "core"}},
        {"store", {"platform", "core"}},
        {"clean", {"platform", "core"}},
        {"app", {"platform", "core", "classify", "scan", "ai", "store", "clean"}},
        {"ui", {"core", "app"}},
    };
    // What others take of the scan: what it yields, and how it starts programs.
    const std::set<std::string> records = {"scan/dir_node.h", "scan/simulator_info.h", "scan/shell.h"};
    const std::regex include(R"(#include "(([a-z_]+)/[^"]+)\")");
    for (const Source& source : sources({"src"})) {
        const std::string folder = fs::path(source.path.substr(4)).begin()->string();
        if (!below.contains(folder))
            continue;
        for (std::sregex_iterator match(source.text.begin(), source.text.end(), include), end; match != end;
             ++match) {
            const std::string file = (*match)[1];
            const std::string other = (*match)[2];
            EXPECT_TRUE(other == folder || below.at(folder).contains(other) || records.contains(file))
                << source.path << " includes " << file;
        }
    }
}

TEST(Layout, EveryTestIsBuilt) {
    for (const Source& source : sources({"tests"})) {
        if (!source.path.ends_with("_test.cpp"))
            continue;
        const fs::path path = fs::path(ULVAK_SOURCE_DIR) / source.path;
        // What only one system has lies one folder deeper, and is built by the same list.
        fs::path folder = path.parent_path();
        if (!fs::exists(folder / "CMakeLists.txt"))
            folder = folder.parent_path();
        std::ifstream file(folder / "CMakeLists.txt");
        const std::string list(std::istreambuf_iterator<char>(file), {});
        EXPECT_NE(list.find(path.filename().string()), std::string::npos) << source.path;
    }
}

TEST(Layout, TextsAreComposedUnicode) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
    ASSERT_TRUE(U_SUCCESS(status));
    for (const Source& source : sources({"src", "tests", "bench", "fuzz"}))
        EXPECT_TRUE(composer->isNormalizedUTF8(source.text, status)) << source.path;
}

}  // namespace
}  // namespace ulvak

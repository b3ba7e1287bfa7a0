#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "layout/project.h"
#include "support/temp_tree.h"

// Rules about the source files themselves that no compiler would check.

namespace ulvak {
namespace {

namespace fs = std::filesystem;
using test::project;
using test::textOf;

struct Source {
    std::string path;  ///< relative to the project's folder
    std::string text;
};

std::vector<Source> sources(const std::vector<std::string>& folders) {
    static const std::set<std::string> kinds = {".cpp",   ".h",   ".mm",    ".m",
                                                ".swift", ".txt", ".cmake", ".qml"};
    std::vector<Source> found;
    for (const std::string& folder : folders) {
        for (const auto& entry : fs::recursive_directory_iterator(project() / folder)) {
            if (!entry.is_regular_file() || !kinds.contains(entry.path().extension().string()))
                continue;
            found.push_back({.path = entry.path().lexically_relative(project()).generic_string(),
                             .text = textOf(entry.path())});
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
    const std::regex qt(R"(\bQt|#include [<"](Q|qcoro/)|\bQ_|\bQML_)");
    for (const Source& source : sources({"src"})) {
        // Rules name programs, and what these are made with.
        const bool isTable = source.path.ends_with("_rules.cpp");
        if (!liesIn(source, "src/app") && !liesIn(source, "src/ui") && !isTable) {
            EXPECT_FALSE(std::regex_search(source.text, qt)) << source.path;
        }
    }
}

TEST(Layout, OnlyTheStyleNamesTheToolkitsControls) {
    const std::regex controls(R"(import QtQuick\.(Controls|Templates))");
    int inStyle = 0;
    for (const Source& source : sources({"src/ui"})) {
        const bool names = std::regex_search(source.text, controls);
        if (liesIn(source, "src/ui/style"))
            inStyle += names ? 1 : 0;
        else
            EXPECT_FALSE(names) << source.path;
    }
    EXPECT_GT(inStyle, 0);
}

TEST(Layout, OnlyThePlatformFolderAsksForTheSystem) {
    const std::regex system(
        "__APP"
        "LE__|__lin"
        "ux__|TARGET_"
        "OS_");
    for (const Source& source : sources({"src", "tests", "bench", "fuzz", "tools", "packaging"})) {
        if (!liesIn(source, "src/platform")) {
            EXPECT_FALSE(std::regex_search(source.text, system)) << source.path;
        }
    }
}

TEST(Layout, FoldersIncludeOnlyWhatStandsBelowThem) {
    const std::map<std::string, std::set<std::string>> below = {
        {"platform", {}},
        {"core", {"platform"}},
        {"scan", {"platform", "core"}},
        {"classify", {"platform", "core"}},
        {"survey", {"platform", "core", "scan", "classify"}},
        {"ai", {"platform", "core"}},
        {"store", {"platform", "core"}},
        {"clean", {"platform", "core"}},
        {"cli", {"platform", "core", "scan", "survey", "ai"}},
        {"app", {"platform", "core", "scan", "survey", "ai", "store", "clean"}},
        {"ui", {"core", "cli", "app"}},
    };
    // What other folders use of the scan: its results, and how it measures a Trash.
    const std::map<std::string, std::set<std::string>> records = {
        {"classify", {"scan/dir_node.h", "scan/linked_file.h", "scan/noted_names.h"}},
        {"clean", {"scan/disk_walker.h"}},
    };
    const std::regex include(R"(#include "(([a-z_]+)/[^"]+)\")");
    for (const Source& source : sources({"src"})) {
        const std::string inside = source.path.substr(std::string_view("src/").size());
        if (!inside.contains('/'))
            continue;  // the files that wire the folders together
        const std::string folder = inside.substr(0, inside.find('/'));
        ASSERT_TRUE(below.contains(folder)) << folder << " is no room that this test knows";
        for (std::sregex_iterator match(source.text.begin(), source.text.end(), include), end; match != end;
             ++match) {
            const std::string file = (*match)[1];
            const std::string other = (*match)[2];
            const auto taken = records.find(folder);
            EXPECT_TRUE(other == folder || below.at(folder).contains(other) ||
                        (taken != records.end() && taken->second.contains(file)))
                << source.path << " includes " << file;
        }
    }
}

/// The words of a CMakeLists.txt, without comments.
std::set<std::string> wordsOf(const fs::path& list) {
    const std::string text = std::regex_replace(textOf(list), std::regex("#[^\n]*"), "");
    const std::regex word(R"([^\s()]+)");
    return {std::sregex_token_iterator(text.begin(), text.end(), word), {}};
}

TEST(Layout, EveryTestIsBuilt) {
    for (const Source& source : sources({"tests"})) {
        if (!source.path.ends_with("_test.cpp"))
            continue;
        const fs::path path = project() / source.path;
        // Files for a single system are one folder deeper and built by the same list.
        fs::path folder = path.parent_path();
        if (!fs::exists(folder / "CMakeLists.txt"))
            folder = folder.parent_path();
        const std::set<std::string> words = wordsOf(folder / "CMakeLists.txt");
        const std::string name = path.lexically_relative(folder).generic_string();
        EXPECT_TRUE(words.contains(name) ||
                    (name.contains('/') && words.contains("${ULVAK_PLATFORM}/" + path.filename().string())))
            << source.path;
    }
}

bool isUtf8(const std::string& bytes) {
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, nullptr, bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    return status == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(status);
}

/// Files people wrote: neither build output nor fuzzing seeds, whose faults are intended.
bool isWritten(const fs::path& path) {
    static const std::set<fs::path> others = {".git", ".cache", "build", "docs/images", "fuzz/corpus"};
    return !others.contains(path.lexically_relative(project()));
}

TEST(Layout, TextsAreComposedUnicode) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
    ASSERT_TRUE(U_SUCCESS(status));
    int texts = 0;
    for (auto entry = fs::recursive_directory_iterator(project()); entry != fs::end(entry); ++entry) {
        if (!isWritten(entry->path())) {
            if (entry->is_directory())
                entry.disable_recursion_pending();
            continue;
        }
        if (!entry->is_regular_file())
            continue;
        const std::string text = textOf(entry->path());
        if (!isUtf8(text))
            continue;
        ++texts;
        EXPECT_TRUE(composer->isNormalizedUTF8(text, status)) << entry->path();
    }
    EXPECT_GT(texts, 300);
}

}  // namespace
}  // namespace ulvak

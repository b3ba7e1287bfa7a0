#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include "layout/project.h"
#include "support/temp_tree.h"

// Files shipped with the program must agree with what the program says about itself.

namespace ulvak {
namespace {

namespace fs = std::filesystem;
using test::project;
using test::textOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSubsetOf;
using testing::SizeIs;
using Words = std::set<std::string>;

/// All matches of the pattern's group, or of the whole pattern if it has none.
Words matches(const std::string& text, const std::string& pattern) {
    const std::regex words(pattern);
    return {std::sregex_token_iterator(text.begin(), text.end(), words, words.mark_count() > 0 ? 1 : 0), {}};
}

const std::string longOption = "--[a-z][a-z-]*";

/// The options that --help lists.
Words helpedOptions() {
    const std::string text = textOf(project() / "src/cli/command_line.cpp");
    const std::size_t begin = text.find("R\"(");
    return matches(text.substr(begin, text.find(")\"", begin) - begin), longOption);
}

/// A manual page, without the escapes that distinguish hyphens from minus signs.
std::string page(const std::string& name) {
    return std::regex_replace(textOf(project() / "docs/man" / name), std::regex(R"(\\-)"), "-");
}

std::string completion(const std::string& name) {
    return textOf(project() / "packaging/completions" / name);
}

TEST(Shipped, EveryPageAndCompletionKnowsTheOptionsOfTheHelp) {
    const Words options = helpedOptions();
    ASSERT_THAT(options, SizeIs(testing::Ge(8U)));
    EXPECT_EQ(matches(page("ulvak.1"), longOption), options);
    EXPECT_EQ(matches(page("ulvak.tr.1"), longOption), options);
    EXPECT_EQ(matches(completion("_ulvak"), longOption), options);
    EXPECT_EQ(matches(completion("ulvak.bash"), longOption), options);

    Words fish = matches(completion("ulvak.fish"), longOption);
    for (const std::string& name : matches(completion("ulvak.fish"), " -l ([a-z-]+)"))
        fish.insert("--" + name);
    EXPECT_EQ(fish, options);
}

TEST(Shipped, EveryPageAndCompletionKnowsTheLevels) {
    for (const std::string& text :
         {textOf(project() / "src/cli/command_line.cpp"), page("ulvak.1"), page("ulvak.tr.1"),
          completion("_ulvak"), completion("ulvak.bash"), completion("ulvak.fish")}) {
        const Words levels = {"safe", "regenerable", "caution", "unknown", "keep"};
        EXPECT_EQ(matches(text, R"(\b(safe|regenerable|caution|unknown|keep)\b)"), levels) << text;
    }
}

TEST(Shipped, BothPagesNameTheSameVariablesAndAllOfOurs) {
    Words ours;
    for (const auto& entry : fs::recursive_directory_iterator(project() / "src")) {
        if (entry.is_regular_file() && entry.path().extension() == ".cpp")
            ours.merge(matches(textOf(entry.path()), R"re("(ULVAK_[A-Z_]+)")re"));
    }
    ASSERT_THAT(ours, Contains("ULVAK_MODEL_OFF"));
    const std::string variable = R"(\b(?:ULVAK|XDG)_[A-Z_]+|\bHOME\b|\bTMPDIR\b)";
    const Words english = matches(page("ulvak.1"), variable);
    EXPECT_THAT(ours, IsSubsetOf(english));
    EXPECT_EQ(matches(page("ulvak.tr.1"), variable), english);
}

TEST(Shipped, TheDesktopEntryHasTheNameOfTheApplicationsPage) {
    const Words entry = matches(textOf(project() / "packaging/linux/ulvak.desktop"), R"(\nName=([^\n]+))");
    ASSERT_THAT(entry, SizeIs(1));
    EXPECT_THAT(textOf(project() / "packaging/linux/org.ulvak.ulvak.metainfo.xml"),
                HasSubstr("<name>" + *entry.begin() + "</name>"));
}

// X desktops use it to match open windows to their entry. Qt takes it from the program's name.
TEST(Shipped, TheDesktopEntryNamesTheWindowsClass) {
    const Words named =
        matches(textOf(project() / "packaging/linux/ulvak.desktop"), R"(\nStartupWMClass=([^\n]+))");
    const Words set = matches(textOf(project() / "src/ui/window_main.cpp"),
                              R"re(setApplicationName\(QStringLiteral\("([^"]+)"\)\))re");
    ASSERT_THAT(set, SizeIs(1));
    EXPECT_EQ(named, set);
}

}  // namespace
}  // namespace ulvak

#include "cli/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

namespace ulvak {
namespace {

CommandLine parse(const std::vector<const char*>& arguments) {
    return CommandLine::parse(arguments);
}

TEST(CommandLine, NothingAsksForNothing) {
    const CommandLine line = parse({});
    EXPECT_FALSE(line.dump || line.ai || line.help || line.version);
    EXPECT_TRUE(line.unknown.empty());
}

TEST(CommandLine, ArgumentsCountWhereverTheyStand) {
    const CommandLine line = parse({"--else", "--ai", "x", "--dump"});
    EXPECT_TRUE(line.dump);
    EXPECT_TRUE(line.ai);
    EXPECT_THAT(line.unknown, testing::ElementsAre("--else", "x"));
}

TEST(CommandLine, ArgumentsAreExact) {
    const CommandLine line = parse({"--Dump", "-dump", "--dump=1", "--dump ", "--AI", "--Help", ""});
    EXPECT_FALSE(line.dump || line.ai || line.help || line.version);
    EXPECT_EQ(line.unknown.size(), 7U);
}

TEST(CommandLine, KnowsHelpAndVersion) {
    EXPECT_TRUE(parse({"--help"}).help);
    EXPECT_TRUE(parse({"-h"}).help);
    EXPECT_TRUE(parse({"--version"}).version);
}

TEST(CommandLine, KnowsWhatIsForTheWindow) {
    EXPECT_TRUE(parse({"--autoscan"}).autoscan);
    EXPECT_TRUE(parse({"--select-first"}).selectFirst);
    EXPECT_TRUE(parse({"--reduced-motion"}).reducedMotion);
    EXPECT_EQ(parse({"--level=safe"}).level, "safe");
    const CommandLine line = parse({"--autoscan=1", "--Select-first", "--reduced-motion ", "--level"});
    EXPECT_FALSE(line.autoscan || line.selectFirst || line.reducedMotion || line.level);
    EXPECT_EQ(line.unknown.size(), 4U);
}

TEST(CommandLine, TheFirstLevelCountsWhateverItNames) {
    EXPECT_EQ(parse({"--level=", "--level=safe"}).level, "");
    EXPECT_EQ(parse({"--level=x", "--level=safe"}).level, "x");
}

TEST(CommandLine, HelpNamesEveryOptionAndEachIsKnown) {
    for (const char* option : {"--dump", "--ai", "--autoscan", "--level=", "--select-first",
                               "--reduced-motion", "--help", "-h", "--version"}) {
        EXPECT_TRUE(helpText().contains(option)) << option;
        EXPECT_TRUE(parse({option}).unknown.empty()) << option;
    }
    EXPECT_TRUE(helpText().ends_with('\n'));
}

TEST(CommandLine, HelpNamesEveryVariable) {
    for (const char* variable : {"HOME", "TMPDIR", "XDG_DATA_HOME", "ULVAK_MODEL_URL", "ULVAK_MODEL",
                                 "ULVAK_MODEL_OFF", "ULVAK_REDUCED_MOTION"})
        EXPECT_TRUE(std::regex_search(std::string(helpText()),
                                      std::regex("\n  ([A-Z_]+, )?" + std::string(variable) + "[ ,\n]")))
            << variable;
}

}  // namespace
}  // namespace ulvak

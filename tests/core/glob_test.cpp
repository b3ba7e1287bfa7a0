#include "core/glob.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <clocale>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak {
namespace {

struct Case {
    std::string_view pattern;
    std::string_view text;
    bool matches;
};

TEST(Glob, MatchesTheWholeText) {
    const Case cases[] = {
        {"", "", true},
        {"", "a", false},
        {"a", "", false},
        {"a", "a", true},
        {"a", "aa", false},
        {"aa", "a", false},
        {"a", "b", false},
        {"abc", "abc", true},
        {"*", "", true},
        {"*", "abc", true},
        {"**", "", true},
        {"a*", "a", true},
        {"a*", "abc", true},
        {"*a", "ba", true},
        {"*a", "ab", false},
        {"a*b*c", "aXbYc", true},
        {"a*b*c", "acb", false},
        {"*ab", "aab", true},
        {"*.trace", "x.trace", true},
        {"*.trace", ".trace", true},
        {"*.trace", "x.traces", false},
        {"a*a", "a", false},
        {"*a*", "bab", true},
        {"*aab*", "aaab", true},
        {"?", "a", true},
        {"?", "", false},
        {"?", "ab", false},
        {"a?c", "abc", true},
        {"?*", "", false},
        {"*?", "abc", true},
        {"??", "ç", true},  // compared bytewise
        {"*", ".hidden", true},
        {"?x", ".x", true},
        {"[.]x", ".x", true},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text), matches) << pattern << " | " << text;
}

TEST(Glob, BracketsHoldOneOfTheirMembers) {
    const Case cases[] = {
        {"[abc]", "b", true},    {"[abc]", "d", false},
        {"[abc]", "", false},    {"[abc]", "ab", false},
        {"[a-c]", "b", true},    {"[a-c]", "-", false},
        {"[a-c]", "d", false},   {"[c-a]", "b", false},
        {"[!a]", "b", true},     {"[!a]", "a", false},
        {"[!a]", "", false},     {"[^a]", "b", true},
        {"[!a-c]", "d", true},   {"[!a-c]", "b", false},
        {"[]]", "]", true},      {"[]a]", "a", true},
        {"[!]]", "]", false},    {"[!]]", "a", true},
        {"[a-]", "-", true},     {"[a-]", "b", false},
        {"[-a]", "-", true},     {"[a!]", "!", true},
        {"[a^]", "^", true},     {"[[]", "[", true},
        {"[*]", "*", true},      {"[*]", "a", false},
        {"[?]", "?", true},      {"[\\]]", "]", true},
        {"[\\a]", "\\", false},  {"[\\a]", "a", true},
        {"[a\\-z]", "m", false}, {"[a\\-z]", "-", true},
        {"[!.]*", ".x", false},  {"[!.]*", "x", true},
        {"[!.]*", "", false},    {"[a]]", "a]", true},
        {"[a-c-e]", "d", false}, {"[a-c-e]", "-", true},
        {"[0-9a-f]", "e", true}, {"[\xc0-\xff]", "\xe7", true},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text), matches) << pattern << " | " << text;
}

TEST(Glob, ABracketThatIsNeverClosedStandsForItself) {
    const Case cases[] = {
        {"[", "[", true},   {"[a", "[a", true},   {"[a", "a", false},
        {"[]", "[]", true}, {"[!", "[!", true},   {"[!]", "[!]", true},
        {"a[", "a[", true}, {"[*", "[xyz", true}, {"[\\]", "[]", true},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text), matches) << pattern << " | " << text;
}

TEST(Glob, ABackslashTakesTheMeaningFromAnyCharacter) {
    const Case cases[] = {
        {"\\*", "*", true},    {"\\*", "a", false},  {"\\?", "?", true},    {"\\[a]", "[a]", true},
        {"\\\\", "\\", true},  {"\\a", "a", true},   {"\\a", "\\a", false}, {"a\\", "a", false},
        {"a\\", "a\\", false}, {"*\\", "\\", false},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text), matches) << pattern << " | " << text;
}

TEST(Glob, InPathsNothingButASlashMatchesASlash) {
    constexpr GlobOptions options{.pathname = true};
    const Case cases[] = {
        {"/a/*", "/a/b", true},      {"/a/*", "/a/b/c", false},
        {"/a/*", "/a/", true},       {"/a/*", "/a", false},
        {"/*/c", "/a/b/c", false},   {"/*/*", "/a/b", true},
        {"*", "/", false},           {"?", "/", false},
        {"a?b", "a/b", false},       {"a[!x]b", "a/b", false},
        {"a[.-0]b", "a/b", false},   {"a\\/b", "a/b", true},
        {"/a*b/c", "/a/b/c", false}, {"/a/*.avd", "/a/x.avd", true},
        {"/[!.]*", "/.a", false},    {"/[!.]*", "/a/b", false},
        {"*a/b*", "xa/bx", true},    {"*a*/x", "aba/x", true},
        {"*/", "a/", true},          {"*/*b", "aab/ab", true},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text, options), matches) << pattern << " | " << text;
    EXPECT_TRUE(globMatches("/a/*", "/a/b/c")) << "names have no such barrier";
}

TEST(Glob, CaseIsIgnoredForTheLettersAToZOnly) {
    constexpr GlobOptions options{.ignoreCase = true};
    const Case cases[] = {
        {"Caches", "caches", true}, {"caches", "CACHES", true}, {"[a-c]", "B", true}, {"[A-C]", "b", true},
        {"[!b]", "B", false},       {"I", "i", true},           {"I", "ı", false},    {"i", "İ", false},
        {"ç", "Ç", false},          {"@", "`", false},          {"[", "{", false},    {"Z", "[", false},
        {"\\A", "a", true},
    };
    for (const auto& [pattern, text, matches] : cases)
        EXPECT_EQ(globMatches(pattern, text, options), matches) << pattern << " | " << text;
    EXPECT_FALSE(globMatches("Caches", "caches"));
}

TEST(Glob, AZeroByteIsAByteLikeAnother) {
    EXPECT_TRUE(globMatches(std::string_view("a\0b", 3), std::string_view("a\0b", 3)));
    EXPECT_FALSE(globMatches("a", std::string_view("a\0", 2)));
    EXPECT_TRUE(globMatches("a*", std::string_view("a\0b", 3)));
}

/// Makes random sequences of pieces.
class Random {
public:
    using Pieces = std::vector<std::string>;

    explicit Random(unsigned seed) : engine_(seed) {}
    std::string joined(const Pieces& pieces, std::size_t most) {
        std::string result;
        for (std::size_t count = engine_() % (most + 1); count > 0; --count)
            result += pieces[engine_() % pieces.size()];
        return result;
    }

private:
    std::mt19937 engine_;
};

/// Compares with the C library. Skips its results for patterns POSIX leaves undefined: "/" in brackets, named
/// classes, and ranges and backslashes in unterminated brackets; and for an escaped "/" after a "*", where
/// the library is wrong.
void compareWithLibrary(const Random::Pieces& ofPattern, const Random::Pieces& ofText, unsigned seed) {
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    Random random(seed);
    int matches = 0;
    for (int i = 0; i < 40'000; ++i) {
        const std::string pattern = random.joined(ofPattern, 7);
        for (int j = 0; j < 4; ++j) {
            const std::string text = random.joined(ofText, 7);
            for (const GlobOptions options :
                 {GlobOptions{}, GlobOptions{.pathname = true}, GlobOptions{.ignoreCase = true},
                  GlobOptions{.pathname = true, .ignoreCase = true}}) {
                const int flags =
                    (options.pathname ? FNM_PATHNAME : 0) | (options.ignoreCase ? FNM_CASEFOLD : 0);
                const bool expected = ::fnmatch(pattern.c_str(), text.c_str(), flags) == 0;
                ASSERT_EQ(globMatches(pattern, text, options), expected)
                    << "pattern " << pattern << " text " << text << " flags " << flags;
                matches += expected ? 1 : 0;
            }
        }
    }
    EXPECT_GT(matches, 1000) << "hardly a comparison worth the name";
}

TEST(Glob, AgreesWithTheLibraryOnStars) {
    compareWithLibrary({"a", "b", "*", "*", "?"}, {"a", "b"}, 1);
}

TEST(Glob, AgreesWithTheLibraryOnPaths) {
    compareWithLibrary({"a", ".", "*", "?", "/", "/", "[!a]", "[a.]"}, {"a", ".", "/"}, 2);
}

TEST(Glob, AgreesWithTheLibraryOnLetterCase) {
    compareWithLibrary({"a", "B", "z", "Z", "*", "@", "[a-b]", "[A-Z]", "[!Z]", "[@-`]", "\\A"},
                       {"A", "b", "z", "Z", "@", "`", "{"}, 3);
}

TEST(Glob, AgreesWithTheLibraryOnBracketsClosedOrNot) {
    compareWithLibrary({"a", "b", "[", "]", "]", "!", "^", "*"}, {"a", "b", "[", "]", "!", "^"}, 4);
}

TEST(Glob, AgreesWithTheLibraryOnRangesAndBackslashes) {
    compareWithLibrary({"a",       "*",     "\\*",     "\\\\",  "\\[",         "[a-c]",   "[!a-c]",
                        "[]a]",    "[^]a]", "[a-]",    "[-a]",  "[a\\-c]",     "[\\]]",   "[\\]-a]",
                        "[!\\\\]", "[c-a]", "[a-c-e]", "[+--]", "[\xc0-\xff]", "[!\xe7]", "]"},
                       {"a", "b", "c", "d", "]", "-", "\\", "*", "[", "\xe7", "\xff"}, 5);
}

TEST(Glob, ManyStarsTakeNoExponentialTime) {
    std::string pattern;
    for (int i = 0; i < 200; ++i)
        pattern += "*a";
    const std::string text(5'000, 'a');
    EXPECT_TRUE(globMatches(pattern, text));
    EXPECT_FALSE(globMatches(pattern + "b", text));
    EXPECT_FALSE(globMatches(pattern + "[!a]*b", text, {.pathname = true, .ignoreCase = true}));
    EXPECT_TRUE(globMatches(std::string(100'000, '*'), text));
    EXPECT_FALSE(globMatches("*" + std::string(2'000, 'a') + "b", text));
    EXPECT_FALSE(globMatches("*" + std::string(2'000, '?') + "b", text));
}

TEST(Glob, BracketsThatAreNeverClosedTakeNoMoreTimeThanOtherCharacters) {
    // Searching for the closing bracket at each of these would take hours.
    const std::string text(12'000, '[');
    EXPECT_FALSE(globMatches("*" + std::string(6'000, '[') + "x", text));
}

}  // namespace
}  // namespace ulvak

#include "core/text.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ulvak {
namespace {

const std::string replaced = "\uFFFD";

bool isUtf8(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

TEST(LowerCased, FoldsWithoutALanguage) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},     {"Caches", "caches"}, {"CACHE", "cache"},     {"ISI", "isi"},
        {"I", "i"},   {"I ğ", "i ğ"},  // the non-ASCII path
        {"ı", "ı"},   {"İ", "i\u0307"},     {"ÇĞÖŞÜ", "çğöşü"},     {"YEDEKLERİM", "yedekleri\u0307m"},
        {"ΑΣ", "ας"}, {"[@`{", "[@`{"},     {"é\u0301", "é\u0301"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(lowerCased(text), expected) << text;
}

TEST(LowerCased, WhatIsNotUtf8IsReplaced) {
    EXPECT_EQ(lowerCased("A\xff"), "a" + replaced);
    EXPECT_EQ(lowerCased("\xc3"), replaced);
    EXPECT_TRUE(isUtf8(lowerCased("\xed\xa0\x80 BACKUP")));
    EXPECT_TRUE(lowerCased("\xed\xa0\x80 BACKUP").ends_with(" backup"));
}

TEST(WellFormed, ReplacesWhatIsNotUtf8AndNothingElse) {
    for (const std::string text : {"", "çğış", "a\n\x1b\u202e", "e\u0301", "😀"})
        EXPECT_EQ(wellFormed(text), text);
    EXPECT_EQ(wellFormed("a\xff\n"), "a" + replaced + "\n");
    EXPECT_EQ(wellFormed("\xc3"), replaced);
    EXPECT_TRUE(isUtf8(wellFormed("\xed\xa0\x80\xf0\x9f")));
}

TEST(Printable, KeepsTextThatDoesNoHarm) {
    for (const std::string text :
         {"", "a b/c", "Çöp Kutusu", "e\u0301", "日本語", "👩‍👩‍👧", "·›…—", "\u00a0"})
        EXPECT_EQ(printable(text), text);
}

TEST(Printable, ReplacesControlCharacters) {
    for (int c = 0; c < 0x20; ++c)
        EXPECT_EQ(printable(std::string(1, static_cast<char>(c))), replaced) << c;
    EXPECT_EQ(printable("\x7f"), replaced);
    EXPECT_EQ(printable("\u0080\u009b\u009f"), replaced + replaced + replaced);
    EXPECT_EQ(printable("\x1b[31mred\x1b[0m"), replaced + "[31mred" + replaced + "[0m");
    EXPECT_EQ(printable("a\r\nb"), "a" + replaced + replaced + "b");
    EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a" + replaced + "b");
}

TEST(Printable, ReplacesWhatBreaksALine) {
    EXPECT_EQ(printable("a\u2028b\u2029c\u0085d"), "a" + replaced + "b" + replaced + "c" + replaced + "d");
}

TEST(Printable, ReplacesMarksThatTurnTheWritingDirection) {
    // "fdp.exe" must not be displayed as "exe.pdf".
    for (const std::string mark : {"\u202a", "\u202b", "\u202c", "\u202d", "\u202e", "\u2066", "\u2067",
                                   "\u2068", "\u2069", "\u200e", "\u200f", "\u061c"})
        EXPECT_EQ(printable("a" + mark + "b"), "a" + replaced + "b") << mark;
}

TEST(Printable, ReplacesBytesThatAreNotUtf8) {
    EXPECT_EQ(printable("\xff"), replaced);
    EXPECT_EQ(printable("a\xc3"), "a" + replaced);
    EXPECT_EQ(printable("\xc3(\xa9"), replaced + "(" + replaced);
    EXPECT_TRUE(isUtf8(printable("\xed\xa0\x80")));      // half of a surrogate pair
    EXPECT_TRUE(isUtf8(printable("\xc0\x80")));          // an overlong null
    EXPECT_TRUE(isUtf8(printable("\xf4\x90\x80\x80")));  // beyond the last code point
    EXPECT_TRUE(isUtf8(printable("\xf0\x9f\x98")));      // truncated
}

TEST(Printable, IsAlwaysUtf8OnOneLineAndChangesNothingTwice) {
    std::mt19937 random(7);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(random() % 12U, '\0');
        std::ranges::generate(text, [&] {
            constexpr std::string_view likely = "a\n\x1b\x80\xbf\xc2\xc3\xe2\xa8\xaa\xed\xf0\x9f\xff";
            return random() % 4U == 0 ? static_cast<char>(random() & 0xffU)
                                      : likely[random() % likely.size()];
        });
        const std::string shown = printable(text);
        ASSERT_TRUE(isUtf8(shown));
        ASSERT_TRUE(std::ranges::none_of(shown, [](char c) { return (c >= 0 && c < 0x20) || c == 0x7f; }));
        ASSERT_EQ(printable(shown), shown);
    }
}

TEST(PaddedOrCut, FillsUpWithBlanks) {
    EXPECT_EQ(paddedOrCut("ab", 4), "ab  ");
    EXPECT_EQ(paddedOrCut("", 3), "   ");
    EXPECT_EQ(paddedOrCut("", 0), "");
    EXPECT_EQ(paddedOrCut("abc", 3), "abc");
}

TEST(PaddedOrCut, CutsAtTheCount) {
    EXPECT_EQ(paddedOrCut("abcd", 3), "abc");
    EXPECT_EQ(paddedOrCut("abcd", 0), "");
}

TEST(PaddedOrCut, CountsCharactersAndNotBytes) {
    EXPECT_EQ(paddedOrCut("çğış", 6), "çğış  ");
    EXPECT_EQ(paddedOrCut("çğış", 2), "çğ");
    EXPECT_EQ(paddedOrCut("日本語", 2), "日本");
    EXPECT_EQ(paddedOrCut("😀a", 1), "😀");
    EXPECT_EQ(paddedOrCut("a\uFFFDb", 2), "a\uFFFD");
}

TEST(PlainLetters, AreWhatIsLeftWhateverStandsBetweenOrUponThem) {
    for (const char* text :
         {"the user", "THE USER", "t h e\tu\ns e r", "the\u200Buser", "\u2060the\uFEFFuser\u00AD",
          "the\u3164user", "the\u00A0u\u2003ser", "\xffthe\x01_user-1", "ｔｈｅ　ｕｓｅｒ", "𝐓𝐡𝐞 𝑢𝑠𝑒𝑟",
          "ⓣⓗⓔ ⓊⓈⒺⓇ", "t\u0336h\u0301e\uFE0F u\U000E0020ser"})
        EXPECT_EQ(plainLetters(text), "theuser") << text;
    EXPECT_EQ(plainLetters("I İ ŞĞ 日本"), "iişğ日本");
    EXPECT_EQ(plainLetters(" 123\u200B"), "");
}

TEST(PlainLetters, LongRunsOfAccentsAreNoBurden) {
    std::string accents;
    for (int i = 0; i < 500'000; ++i)
        accents += "\u0301\u0323";
    EXPECT_EQ(plainLetters("a" + accents + "b"), "ab");
}

TEST(Joined, PutsACommaBetweenNames) {
    EXPECT_EQ(joined({}), "");
    EXPECT_EQ(joined(std::vector<std::string>{"Bir"}), "Bir");
    EXPECT_EQ(joined(std::vector<std::string>{"Bir", "İki", ""}), "Bir, İki, ");
}

TEST(ReplacedAll, ReplacesFromLeftToRight) {
    EXPECT_EQ(replacedAll("a_b_c", "_", " "), "a b c");
    EXPECT_EQ(replacedAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replacedAll("x.avd.avd", ".avd", ""), "x");
    EXPECT_EQ(replacedAll("abc", "d", "e"), "abc");
    EXPECT_EQ(replacedAll("", "a", "b"), "");
    EXPECT_EQ(replacedAll("{name}", "{name}", "{name}{name}"), "{name}{name}")
        << "what was put in is not read again";
    EXPECT_EQ(replacedAll("Pixel_7_", "_", " "), "Pixel 7 ");
}

}  // namespace
}  // namespace ulvak

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/finding.h"
#include "core/format.h"
#include "core/glob.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/verdict.h"
#include "core/verdict_json.h"
#include "support/turkish_locale.h"

// A Turkish locale changes nothing, although there "I" is not the capital of "i" and numbers are formatted
// differently.

namespace ulvak {
namespace {

using namespace std::chrono_literals;

/// Every text that a locale could affect.
std::vector<std::string> texts() {
    const FileTime date = std::chrono::sys_days{std::chrono::year{2001} / 9 / 9};
    const auto now = date + std::chrono::days(50'000);
    Finding group;
    group.urls.assign(12'345, "/a");
    appendMemberCount(group);
    const Verdict verdict{.title = "t", .source = VerdictSource::ai, .confidence = 12'345};
    return {
        lowerCased("LIBRARY/CACHES I"),
        lowerCased("IĞDIR İZMİR ı"),
        printable("Iıİi\u0130\xff\n"),
        paddedOrCut("Iıİi", 6),
        Format::bytes(1'234'567'890'123),
        Format::bytes(999'999),
        Format::bytes(1),
        Format::relative(date, now),
        Format::relativeEnglish(date, now),
        Format::relative(date - 3h, date),
        Format::relativeEnglish(date - 3h, date),
        group.title,
        badgeText(verdict),
        toJson(verdict).dump(),
        Paths::display("/private/var/folders/x",
                       {.home = "/home/I", .temp = "/T", .cache = "/C", .trash = {}}),
        std::to_string(globMatches("LIBRARY/*[I]", "library/i", {.ignoreCase = true})),
        std::to_string(globMatches("i", "I", {.ignoreCase = true})),
        std::to_string(globMatches("ı", "I", {.ignoreCase = true})),
        std::to_string(globMatches("?", "ı")),
    };
}

TEST(Locale, TurkishChangesNothing) {
    std::vector<std::string> inTurkish;
    {
        const test::TurkishLocale locale;
        if (const auto reason = locale.whyNot())
            GTEST_SKIP() << *reason;
        const icu::Locale before;
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale("tr", "TR"), status);
        inTurkish = texts();
        EXPECT_EQ(lowerCased("I"), "i");
        EXPECT_TRUE(globMatches("LIBRARY", "library", {.ignoreCase = true}));
        EXPECT_EQ(Format::relativeEnglish(FileTime{} - 24h * 21, FileTime{}), "3 weeks ago");
        icu::Locale::setDefault(before, status);
        ASSERT_TRUE(U_SUCCESS(status));
    }
    EXPECT_EQ(inTurkish, texts());
}

}  // namespace
}  // namespace ulvak

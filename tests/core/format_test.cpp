#include "core/format.h"

#include <gtest/gtest.h>
#include <unicode/numberformatter.h>

#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>

namespace ulvak {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year;

TEST(FormatBytes, ChoosesUnitAndDigits) {
    const std::pair<std::int64_t, std::string> cases[] = {
        {0, "Sıfır KB"},
        {1, "1 bayt"},
        {2, "2 bayt"},
        {500, "500 bayt"},
        {999, "999 bayt"},
        {1'000, "1 KB"},
        {1'499, "1 KB"},
        {1'501, "2 KB"},
        {50'000, "50 KB"},
        {999'000, "999 KB"},
        {1'000'000, "1 MB"},
        {1'049'999, "1 MB"},
        {1'050'001, "1,1 MB"},
        {1'500'000, "1,5 MB"},
        {50'000'000, "50 MB"},
        {512'000'000, "512 MB"},
        {1'000'000'000, "1 GB"},
        {9'100'000'000, "9,1 GB"},
        {9'120'000'000, "9,12 GB"},
        {9'010'000'000, "9,01 GB"},
        {9'001'000'000, "9 GB"},
        {10'000'000'000, "10 GB"},
        {123'456'789'012, "123,46 GB"},
        {1'234'567'890'123, "1,23 TB"},
        {5'000'000'000'000'000, "5 PB"},
        {1'000'000'000'000'000'000, "1 EB"},
        {std::numeric_limits<std::int64_t>::max(), "9,22 EB"},
    };
    for (const auto& [count, text] : cases)
        EXPECT_EQ(Format::bytes(count), text) << count;
}

TEST(FormatBytes, ChoosesTheUnitAfterRounding) {
    EXPECT_EQ(Format::bytes(999'499), "999 KB");
    EXPECT_EQ(Format::bytes(999'500), "1 MB");
    EXPECT_EQ(Format::bytes(999'950), "1 MB");
    EXPECT_EQ(Format::bytes(999'949'999), "999,9 MB");
    EXPECT_EQ(Format::bytes(999'950'000), "1 GB");
    EXPECT_EQ(Format::bytes(999'994'999'999), "999,99 GB");
    EXPECT_EQ(Format::bytes(999'995'000'000), "1 TB");
    EXPECT_EQ(Format::bytes(999'994'999'999'999), "999,99 TB");
    EXPECT_EQ(Format::bytes(999'995'000'000'000), "1 PB");
    EXPECT_EQ(Format::bytes(999'994'999'999'999'999), "999,99 PB");
    EXPECT_EQ(Format::bytes(999'995'000'000'000'000), "1 EB");
}

TEST(FormatBytes, RoundsHalvesToEven) {
    EXPECT_EQ(Format::bytes(1'500), "2 KB");
    EXPECT_EQ(Format::bytes(2'500), "2 KB");
    EXPECT_EQ(Format::bytes(3'500), "4 KB");
    EXPECT_EQ(Format::bytes(1'050'000), "1 MB");
    EXPECT_EQ(Format::bytes(1'150'000), "1,2 MB");
    EXPECT_EQ(Format::bytes(1'250'000), "1,2 MB");
    EXPECT_EQ(Format::bytes(1'005'000'000), "1 GB");
    EXPECT_EQ(Format::bytes(1'015'000'000), "1,02 GB");
    EXPECT_EQ(Format::bytes(1'025'000'000), "1,02 GB");
    EXPECT_EQ(Format::bytes(1'025'000'001), "1,03 GB");
    EXPECT_EQ(Format::bytes(9'005'000'000'000'000'000), "9 EB");
    EXPECT_EQ(Format::bytes(9'015'000'000'000'000'000), "9,02 EB");
}

TEST(FormatBytes, NegativeCountsHaveASign) {
    EXPECT_EQ(Format::bytes(-1), "-1 bayt");
    EXPECT_EQ(Format::bytes(-2'500), "-2 KB");
    EXPECT_EQ(Format::bytes(-999'950), "-1 MB");
    EXPECT_EQ(Format::bytes(-9'100'000'000), "-9,1 GB");
    EXPECT_EQ(Format::bytes(std::numeric_limits<std::int64_t>::min()), "-9,22 EB");
}

/// `count` × 10^-shift as a decimal number.
std::string decimalText(std::uint64_t count, std::size_t shift) {
    std::string digits = std::to_string(count);
    if (digits.size() <= shift)
        digits.insert(0, shift + 1 - digits.size(), '0');
    return digits.insert(digits.size() - shift, ".");
}

icu::number::LocalizedNumberFormatter turkishNumbers(int fractionDigits) {
    return icu::number::NumberFormatter::withLocale(icu::Locale("tr", "TR"))
        .grouping(UNUM_GROUPING_OFF)
        .precision(icu::number::Precision::maxFraction(fractionDigits))
        .roundingMode(UNUM_ROUND_HALFEVEN);
}

/// The same rules implemented with ICU's number formatting.
std::string bytesByLibrary(std::int64_t count) {
    static const std::array formatters = {turkishNumbers(0), turkishNumbers(1), turkishNumbers(2)};
    constexpr std::array<std::pair<const char*, std::size_t>, 7> units = {
        {{"bayt", 0}, {"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};
    const std::uint64_t magnitude =
        count < 0 ? 0 - static_cast<std::uint64_t>(count) : static_cast<std::uint64_t>(count);
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto& [unit, digits] = units[i];
        UErrorCode status = U_ZERO_ERROR;
        const auto number = formatters.at(digits).formatDecimal(decimalText(magnitude, 3 * i), status);
        std::string text;
        number.toString(status).toUTF8String(text);
        EXPECT_TRUE(U_SUCCESS(status));
        const bool fits = text.substr(0, text.find(',')).size() <= 3;
        if (fits || i + 1 == units.size())
            return (count < 0 ? "-" : "") + text + " " + unit;
    }
    return {};
}

TEST(FormatBytes, AgreesWithTheUnicodeLibrary) {
    std::mt19937_64 random(20'240'229);
    for (int i = 0; i < 100'000; ++i) {
        // All magnitudes are equally likely, and numbers near a half or the next unit are common.
        auto count = static_cast<std::int64_t>(random() >> (random() % 64U));
        if (i % 3 == 0) {
            std::int64_t step = 1;
            for (std::uint64_t j = random() % 18U; j > 0; --j)
                step *= 10;
            count -= count % step;
            count += step / 2 + static_cast<std::int64_t>(random() % 3U) - 1;
        }
        if (i % 7 == 0 && count != std::numeric_limits<std::int64_t>::min())
            count = -count;
        if (count == 0)
            continue;
        ASSERT_EQ(Format::bytes(count), bytesByLibrary(count)) << count;
    }
}

/// A Wednesday at noon, so that no unit changes at midnight by chance.
const Format::Clock::time_point now = sys_days{year{2024} / 5 / 15} + 12h;

std::string turkish(FileTime date) {
    return Format::relative(date, now);
}
std::string english(FileTime date) {
    return Format::relativeEnglish(date, now);
}
FileTime at(sys_days day) {
    return day + 12h;
}

TEST(FormatRelative, AnAbsentDateIsUnknown) {
    EXPECT_EQ(Format::relative(std::nullopt), "bilinmiyor");
    EXPECT_EQ(Format::relativeEnglish(std::nullopt), "unknown");
}

TEST(FormatRelative, SaysEveryUnitOfThePast) {
    const FileTime today = std::chrono::time_point_cast<std::chrono::microseconds>(now);
    const std::tuple<FileTime, std::string, std::string> cases[] = {
        {today - 1s, "1 saniye önce", "1 second ago"},
        {today - 45s, "45 saniye önce", "45 seconds ago"},
        {today - 1min, "1 dakika önce", "1 minute ago"},
        {today - 2min, "2 dakika önce", "2 minutes ago"},
        {today - 1h, "1 saat önce", "1 hour ago"},
        {today - 23h, "23 saat önce", "23 hours ago"},
        {today - days(1), "1 gün önce", "1 day ago"},
        {today - days(3), "3 gün önce", "3 days ago"},
        {today - days(7), "1 hafta önce", "1 week ago"},
        {today - days(21), "3 hafta önce", "3 weeks ago"},
        {at(year{2024} / 4 / 15), "1 ay önce", "1 month ago"},
        {at(year{2023} / 6 / 15), "11 ay önce", "11 months ago"},
        {at(year{2023} / 5 / 15), "1 yıl önce", "1 year ago"},
        {at(year{2001} / 1 / 1), "23 yıl önce", "23 years ago"},
    };
    for (const auto& [date, inTurkish, inEnglish] : cases) {
        EXPECT_EQ(turkish(date), inTurkish);
        EXPECT_EQ(english(date), inEnglish);
    }
}

TEST(FormatRelative, SaysEveryUnitOfTheFuture) {
    const FileTime today = std::chrono::time_point_cast<std::chrono::microseconds>(now);
    const std::tuple<FileTime, std::string, std::string> cases[] = {
        {today + 1s, "1 saniye sonra", "in 1 second"},
        {today + 2min, "2 dakika sonra", "in 2 minutes"},
        {today + 1h, "1 saat sonra", "in 1 hour"},
        {today + days(1), "1 gün sonra", "in 1 day"},
        {today + days(14), "2 hafta sonra", "in 2 weeks"},
        {at(year{2024} / 7 / 15), "2 ay sonra", "in 2 months"},
        {at(year{2034} / 5 / 15), "10 yıl sonra", "in 10 years"},
    };
    for (const auto& [date, inTurkish, inEnglish] : cases) {
        EXPECT_EQ(turkish(date), inTurkish);
        EXPECT_EQ(english(date), inEnglish);
    }
}

TEST(FormatRelative, ChangesTheUnitExactlyWhenTheNextOneIsFull) {
    const FileTime today = std::chrono::time_point_cast<std::chrono::microseconds>(now);
    EXPECT_EQ(turkish(today - 59s), "59 saniye önce");
    EXPECT_EQ(turkish(today - 60s), "1 dakika önce");
    EXPECT_EQ(turkish(today - 119s), "1 dakika önce") << "rounded towards zero";
    EXPECT_EQ(turkish(today - 59min - 59s), "59 dakika önce");
    EXPECT_EQ(turkish(today - 60min), "1 saat önce");
    EXPECT_EQ(turkish(today - 23h - 59min - 59s), "23 saat önce");
    EXPECT_EQ(turkish(today - 24h), "1 gün önce");
    EXPECT_EQ(turkish(today - days(7) + 1s), "6 gün önce");
    EXPECT_EQ(turkish(today - days(7)), "1 hafta önce");
    EXPECT_EQ(turkish(at(year{2024} / 4 / 15) + 1s), "4 hafta önce");
    EXPECT_EQ(turkish(at(year{2023} / 5 / 15) + 1s), "11 ay önce");
    EXPECT_EQ(turkish(today + 59s), "59 saniye sonra");
    EXPECT_EQ(turkish(today + 60s), "1 dakika sonra");
    EXPECT_EQ(turkish(today + days(7) - 1s), "6 gün sonra");
}

TEST(FormatRelative, ThisMomentIsZeroSeconds) {
    const FileTime today = std::chrono::time_point_cast<std::chrono::microseconds>(now);
    for (const FileTime date : {today, today - 1us, today + 1us, today - 999ms, today + 999ms}) {
        EXPECT_EQ(turkish(date), "0 saniye sonra");
        EXPECT_EQ(english(date), "in 0 seconds");
    }
}

TEST(FormatRelative, CountsCalendarMonthsOfDifferentLengths) {
    EXPECT_EQ(Format::relative(at(year{2024} / 2 / 29), at(year{2024} / 3 / 29)), "1 ay önce");
    EXPECT_EQ(Format::relative(at(year{2024} / 3 / 1), at(year{2024} / 3 / 29)), "4 hafta önce");
    EXPECT_EQ(Format::relative(at(year{2023} / 2 / 1), at(year{2023} / 3 / 1)), "1 ay önce");
    EXPECT_EQ(Format::relative(at(year{2020} / 2 / 29), at(year{2024} / 2 / 29)), "4 yıl önce");
}

TEST(FormatRelative, HoldsForDatesAtTheEndsOfTheRange) {
    EXPECT_EQ(turkish(at(year{1935} / 5 / 15)), "89 yıl önce");
    EXPECT_EQ(turkish(at(year{1200} / 5 / 15)).substr(0, 3), "824");
    for (const auto& [date, direction] :
         {std::pair(FileTime::min(), " yıl önce"), {FileTime::max(), " yıl sonra"}}) {
        const std::string text = turkish(date);
        EXPECT_TRUE(text.ends_with(direction)) << text;
        EXPECT_TRUE(text.starts_with("29")) << text << ": 292,000 years, whatever the grouping";
    }
    EXPECT_TRUE(english(FileTime::min()).ends_with(" years ago"));
}

TEST(FormatRelative, CountsFromNowUnlessToldOtherwise) {
    const auto threeDaysAgo =
        std::chrono::time_point_cast<std::chrono::microseconds>(Format::Clock::now()) - days(3) - 1h;
    EXPECT_EQ(Format::relative(threeDaysAgo), "3 gün önce");
    EXPECT_EQ(Format::relativeEnglish(threeDaysAgo), "3 days ago");
}

}  // namespace
}  // namespace ulvak

#include "core/format.h"

#include <unicode/gregocal.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <array>
#include <string_view>

namespace ulvak::Format {
namespace {

struct CalendarUnit {
    UCalendarDateFields field;
    URelativeDateTimeUnit unit;
};

/// Largest first.
constexpr std::array<CalendarUnit, 7> calendarUnits = {{
    {UCAL_YEAR, UDAT_REL_UNIT_YEAR},
    {UCAL_MONTH, UDAT_REL_UNIT_MONTH},
    {UCAL_WEEK_OF_YEAR, UDAT_REL_UNIT_WEEK},
    {UCAL_DAY_OF_MONTH, UDAT_REL_UNIT_DAY},
    {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR},
    {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE},
    {UCAL_SECOND, UDAT_REL_UNIT_SECOND},
}};

UDate milliseconds(auto time) {
    return std::chrono::duration<double, std::milli>(time.time_since_epoch()).count();
}

struct Distance {
    double amount = 0;  ///< negative in the past
    URelativeDateTimeUnit unit = UDAT_REL_UNIT_SECOND;
};

/// Calendar arithmetic in UTC: looking up the user's time zone costs more than it could change.
Distance distance(FileTime date, Clock::time_point now) {
    UErrorCode status = U_ZERO_ERROR;
    for (const auto& [field, unit] : calendarUnits) {
        icu::GregorianCalendar calendar(icu::TimeZone::createTimeZone("UTC"), status);
        calendar.setTime(milliseconds(now), status);
        const int amount = calendar.fieldDifference(milliseconds(date), field, status);
        if (U_FAILURE(status))
            break;
        if (amount != 0)
            return {.amount = static_cast<double>(amount), .unit = unit};
    }
    return {};
}

std::string relativeIn(const icu::Locale& locale, FileTime date, Clock::time_point now) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter formatter(locale, status);
    const auto [amount, unit] = distance(date, now);
    icu::UnicodeString text;
    formatter.formatNumeric(amount, unit, text, status);
    std::string result;
    text.toUTF8String(result);
    return result;
}

struct ByteUnit {
    std::string_view name;
    int fractionDigits;
};

constexpr std::array<ByteUnit, 7> byteUnits = {
    {{"bayt", 0}, {"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

constexpr std::uint64_t powerOfTen(std::size_t exponent) {
    std::uint64_t power = 1;
    while (exponent-- > 0)
        power *= 10;
    return power;
}

constexpr std::uint64_t dividedHalfToEven(std::uint64_t value, std::uint64_t divisor) {
    const std::uint64_t quotient = value / divisor;
    const std::uint64_t rest = value % divisor;
    const bool up = rest > divisor - rest || (rest == divisor - rest && quotient % 2 == 1);
    return quotient + (up ? 1 : 0);
}

}  // namespace

std::string relative(std::optional<FileTime> date, Clock::time_point now) {
    return date ? relativeIn(icu::Locale("tr", "TR"), *date, now) : "bilinmiyor";
}

std::string relativeEnglish(std::optional<FileTime> date, Clock::time_point now) {
    return date ? relativeIn(icu::Locale::getUS(), *date, now) : "unknown";
}

std::string bytes(std::int64_t count) {
    if (count == 0)
        return "Sıfır KB";
    const bool isNegative = count < 0;
    const std::uint64_t magnitude =
        isNegative ? std::uint64_t{0} - static_cast<std::uint64_t>(count) : static_cast<std::uint64_t>(count);

    // Integer arithmetic, so that rounding at a half is exact.
    std::size_t unit = 0;
    std::uint64_t scaled = 0;  // the number in hundredths, tenths or ones of the unit
    std::uint64_t one = 1;     // one unit on the same scale
    for (;; ++unit) {
        const auto digits = static_cast<std::size_t>(byteUnits[unit].fractionDigits);
        one = powerOfTen(digits);
        scaled = dividedHalfToEven(magnitude, powerOfTen(3 * unit - digits));
        if (scaled < 1000 * one || unit + 1 == byteUnits.size())
            break;
    }

    std::string text = std::to_string(scaled / one);
    if (scaled % one != 0) {
        std::string fraction = std::to_string(one + scaled % one).substr(1);
        while (fraction.ends_with('0'))
            fraction.pop_back();
        text += "," + fraction;
    }
    return (isNegative ? "-" : "") + text + " " + std::string(byteUnits[unit].name);
}

}  // namespace ulvak::Format

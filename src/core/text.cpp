#include "core/text.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <limits>

#include "platform/ascii.h"

namespace ulvak {
namespace {

constexpr UChar32 replacement = 0xFFFD;

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isHarmful(UChar32 c) {
    const bool isControl = c < 0x20 || (c >= 0x7F && c <= 0x9F);
    const bool breaksLine = c == 0x2028 || c == 0x2029;
    return isControl || breaksLine || u_hasBinaryProperty(c, UCHAR_BIDI_CONTROL) != 0;
}

/// Each maximal invalid sequence becomes one U+FFFD. ICU lengths are 32-bit; a longer text would be taken for
/// a NUL-terminated string.
icu::UnicodeString decoded(std::string_view text) {
    constexpr std::size_t maxLength = std::numeric_limits<std::int32_t>::max();
    const std::string_view head = text.substr(0, maxLength);
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(head.data(), static_cast<std::int32_t>(head.size())));
}

icu::UnicodeString lettersOf(const icu::UnicodeString& text) {
    icu::UnicodeString letters;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 c = text.char32At(i);
        // Accents and invisible fillers count as alphabetic too.
        const bool isAccent = (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0;
        const bool isSeen = u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) == 0;
        if (u_isUAlphabetic(c) != 0 && !isAccent && isSeen)
            letters.append(c);
    }
    return letters;
}

std::string encoded(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

}  // namespace

std::string lowerCased(std::string_view text) {
    if (isAscii(text))
        return platform::lowerAscii(text);
    return encoded(decoded(text).toLower(icu::Locale::getRoot()));
}

std::string wellFormed(std::string_view text) {
    return encoded(decoded(text));
}

std::string printable(std::string_view text) {
    icu::UnicodeString shown;
    const icu::UnicodeString read = decoded(text);
    for (std::int32_t i = 0; i < read.length(); i = read.moveIndex32(i, 1)) {
        const UChar32 c = read.char32At(i);
        shown.append(isHarmful(c) ? replacement : c);
    }
    return encoded(shown);
}

std::string plainLetters(std::string_view text) {
    // Letters first: reordering a long run of accents takes quadratic time.
    const icu::UnicodeString letters = lettersOf(decoded(text));
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* plain = icu::Normalizer2::getNFKCCasefoldInstance(error);
    if (U_FAILURE(error) != 0)
        return encoded(icu::UnicodeString(letters).toLower(icu::Locale::getRoot()));
    icu::UnicodeString folded = plain->normalize(letters, error);
    return encoded(lettersOf(U_FAILURE(error) != 0 ? letters : folded));
}

bool isWordByte(char c) {
    const char lower = platform::lowerAscii(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 0x80;
}

std::string nameKey(std::string_view name) {
    std::string key = lowerCased(name);
    std::erase_if(key, [](char c) { return !isWordByte(c); });
    return key;
}

bool isBlank(std::string_view text) {
    const icu::UnicodeString read = decoded(text);
    for (std::int32_t i = 0; i < read.length(); i = read.moveIndex32(i, 1)) {
        const UChar32 c = read.char32At(i);
        if (c != replacement && u_isgraph(c) != 0 &&
            u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) == 0)
            return false;
    }
    return true;
}

std::string paddedOrCut(std::string_view text, std::size_t count) {
    using platform::isContinuation;
    std::size_t characters = 0;
    std::size_t end = 0;
    while (end < text.size() && (characters < count || isContinuation(text[end]))) {
        if (!isContinuation(text[end]))
            ++characters;
        ++end;
    }
    std::string result(text.substr(0, end));
    result.append(count - characters, ' ');
    return result;
}

std::string joined(std::span<const std::string> names) {
    std::string list;
    for (const std::string& name : names) {
        if (&name != names.data())
            list += ", ";
        list += name;
    }
    return list;
}

std::string replacedAll(std::string_view text, std::string_view what, std::string_view with) {
    std::string result;
    for (;;) {
        const std::size_t found = text.find(what);
        result += text.substr(0, found);
        if (found == std::string_view::npos)
            return result;
        result += with;
        text.remove_prefix(found + what.size());
    }
}

}  // namespace ulvak

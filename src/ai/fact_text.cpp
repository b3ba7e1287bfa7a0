#include "ai/fact_text.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "core/text.h"
#include "platform/ascii.h"

namespace ulvak::FactText {
namespace {

using platform::isContinuation;

constexpr std::string_view ellipsis = "…";
/// Maximum bytes of a character in UTF-8.
constexpr std::size_t maxCharacterBytes = 4;

/// The offset of the character after the first `count`.
std::size_t offsetOf(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count) {
        do
            ++at;
        while (at < text.size() && isContinuation(text[at]));
    }
    return at;
}

/// A prefix of `bytes` long enough for `count` characters, so that the cost does not depend on what is cut
/// off anyway. One character more than needed, so that the cut is still detected.
std::string_view enough(std::string_view bytes, std::size_t count) {
    return bytes.substr(0, (count + 1) * maxCharacterBytes);
}

constexpr std::array<std::string_view, 6> quotationMarks = {"\"", "“", "”", "„", "‟", "＂"};
constexpr std::array<std::string_view, 6> colons = {":", "：", "﹕", "︓", "ː", "∶"};

std::string withoutMarks(std::string text, std::span<const std::string_view> marks) {
    for (const std::string_view mark : marks) {
        if (text.contains(mark))
            text = replacedAll(text, mark, "'");
    }
    return text;
}

/// Replaces them with single ones: a name that closes a quotation could continue in another voice.
std::string withoutQuotationMarks(std::string text) {
    return withoutMarks(std::move(text), quotationMarks);
}

/// If the text imitates the user's note, on its own or together with what precedes it, removes what makes it
/// look like one.
std::string withoutVoice(std::string text, std::string_view before = {}) {
    if (!plainLetters(std::string(before) + text).contains("theusersaysaboutthisfolder"))
        return text;
    return withoutMarks(withoutQuotationMarks(std::move(text)), colons);
}

std::string quoted(std::string_view bytes) {
    return withoutVoice(withoutQuotationMarks(printable(bytes)));
}

/// Tabs are the only control characters allowed within a line.
std::string printableWithTabs(std::string_view text) {
    std::string result;
    for (;;) {
        const std::size_t tab = text.find('\t');
        result += printable(text.substr(0, tab));
        if (tab == std::string_view::npos)
            return result;
        result += '\t';
        text.remove_prefix(tab + 1);
    }
}

std::string_view trimmedOf(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

/// Unicode spaces and line breaks beyond ASCII.
constexpr std::array<std::string_view, 20> wideSpaces = {
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000", "\u200B"};
constexpr std::string_view narrowSpaces = " \t\n\v\f\r";

}  // namespace

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return !isContinuation(c); }));
}

std::string shortened(std::string_view text, std::size_t count) {
    if (text.size() <= count || characterCount(text) <= count)
        return std::string(text);
    return std::string(text.substr(0, offsetOf(text, count - 1))).append(ellipsis);
}

std::string name(std::string_view bytes) {
    return shortened(quoted(enough(bytes, maxNameLength)), maxNameLength);
}

std::string path(std::string_view bytes) {
    constexpr std::size_t half = maxPathLength / 2;
    if (bytes.size() <= maxPathLength)
        return shortened(quoted(bytes), maxPathLength);
    std::string all = quoted(bytes);
    const std::size_t count = characterCount(all);
    if (count <= maxPathLength)
        return all;
    const std::string_view view = all;
    return std::string(view.substr(0, offsetOf(view, half)))
        .append(ellipsis)
        .append(view.substr(offsetOf(view, count - (half - 1))));
}

std::string excerpt(std::string_view bytes, std::size_t count, std::string_view before) {
    std::string text(bytes);
    std::ranges::replace_if(text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    text = withoutVoice(printableWithTabs(trimmedOf(text, " \t")), before);
    text.resize(offsetOf(text, count));
    return text;
}

std::string answer(std::string_view text, std::size_t count) {
    std::string line(enough(text, count));
    std::ranges::replace_if(line, [](char c) { return narrowSpaces.contains(c); }, ' ');
    return shortened(printable(trimmedOf(line, " ")), count);
}

std::string_view trimmed(std::string_view text) {
    for (;;) {
        const std::size_t before = text.size();
        text = trimmedOf(text, narrowSpaces);
        for (const std::string_view space : wideSpaces) {
            if (text.starts_with(space))
                text.remove_prefix(space.size());
            if (text.ends_with(space))
                text.remove_suffix(space.size());
        }
        if (text.size() == before)
            return text;
    }
}

}  // namespace ulvak::FactText

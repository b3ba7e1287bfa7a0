#include "core/glob.h"

#include <cstddef>
#include <optional>

#include "platform/ascii.h"

namespace ulvak {
namespace {

class Matcher {
public:
    Matcher(std::string_view pattern, std::string_view text, GlobOptions options)
        : pattern_(pattern), text_(text), options_(options) {}

    [[nodiscard]] bool matches() {
        // One backtracking point is enough: once a later "*" is reached, trying other lengths for an earlier
        // one can only leave less text.
        std::optional<Positions> afterStar;
        Positions at;
        while (at.text < text_.size() || at.pattern < pattern_.size()) {
            if (at.pattern < pattern_.size() && pattern_[at.pattern] == '*') {
                ++at.pattern;
                afterStar = at;
                continue;
            }
            if (at.text < text_.size()) {
                if (const auto next = afterOneCharacter(at.pattern, text_[at.text])) {
                    at = {.pattern = *next, .text = at.text + 1};
                    continue;
                }
            }
            // Dead end: let the last "*" take one more character.
            if (!afterStar || afterStar->text == text_.size() || isBarrier(text_[afterStar->text]))
                return false;
            ++afterStar->text;
            at = *afterStar;
        }
        return true;
    }

private:
    struct Positions {
        std::size_t pattern = 0;
        std::size_t text = 0;
    };

    [[nodiscard]] bool isBarrier(char c) const { return options_.pathname && c == '/'; }

    [[nodiscard]] unsigned char folded(char c) const {
        return static_cast<unsigned char>(options_.ignoreCase ? platform::lowerAscii(c) : c);
    }

    /// Where the pattern continues if the element at `at` (not a "*") matches `c`.
    [[nodiscard]] std::optional<std::size_t> afterOneCharacter(std::size_t at, char c) {
        if (at == pattern_.size())
            return std::nullopt;
        char wanted = pattern_[at];
        if (wanted == '?')
            return isBarrier(c) ? std::nullopt : std::optional(at + 1);
        if (wanted == '[') {
            if (const auto end = bracketEnd(at))
                return !isBarrier(c) && bracketHolds(at, *end, c) ? std::optional(*end + 1) : std::nullopt;
        }
        if (wanted == '\\') {
            if (++at == pattern_.size())
                return std::nullopt;
            wanted = pattern_[at];
        }
        return folded(wanted) == folded(c) ? std::optional(at + 1) : std::nullopt;
    }

    [[nodiscard]] bool isNegated(std::size_t open) const {
        return open + 1 < pattern_.size() && (pattern_[open + 1] == '!' || pattern_[open + 1] == '^');
    }

    /// The position of the "]" that closes the "[" at `open`. A "]" in first position is a member.
    [[nodiscard]] std::optional<std::size_t> bracketEnd(std::size_t open) {
        if (open >= neverClosed_)
            return std::nullopt;
        const std::size_t first = open + (isNegated(open) ? 2 : 1);
        for (std::size_t i = first; i < pattern_.size(); ++i) {
            if (pattern_[i] == '\\')
                ++i;
            else if (pattern_[i] == ']' && i != first)
                return i;
        }
        neverClosed_ = open;
        return std::nullopt;
    }

    [[nodiscard]] bool bracketHolds(std::size_t open, std::size_t end, char c) const {
        const bool negated = isNegated(open);
        const unsigned char wanted = folded(c);
        std::size_t i = open + (negated ? 2 : 1);
        const auto member = [&] {
            if (pattern_[i] == '\\' && i + 1 < end)
                ++i;
            return folded(pattern_[i++]);
        };
        bool held = false;
        while (i < end) {
            const unsigned char low = member();
            unsigned char high = low;
            if (i + 1 < end && pattern_[i] == '-') {
                ++i;
                high = member();
            }
            held = held || (low <= wanted && wanted <= high);
        }
        return held != negated;
    }

    std::string_view pattern_;
    std::string_view text_;
    GlobOptions options_;
    /// No "[" from here on has a closing "]". Searched for once, not for every character.
    std::size_t neverClosed_ = std::string_view::npos;
};

}  // namespace

bool globMatches(std::string_view pattern, std::string_view text, GlobOptions options) {
    return Matcher(pattern, text, options).matches();
}

}  // namespace ulvak

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "core/glob.h"

// Compares the matcher with a brute-force one. The input is an options byte, the pattern, a NUL byte, and the
// text.

namespace {

using ulvak::GlobOptions;

/// A literal reading of the pattern syntax; exponential in the number of stars.
class SlowMatcher {
public:
    explicit SlowMatcher(GlobOptions options) : options_(options) {}

    [[nodiscard]] bool matches(std::string_view pattern, std::string_view text) {
        if (--stepsLeft_ < 0)
            return false;
        if (pattern.empty())
            return text.empty();
        if (pattern.front() == '*') {
            const bool canTakeOne = !text.empty() && !isBarrier(text.front());
            return matches(pattern.substr(1), text) || (canTakeOne && matches(pattern, text.substr(1)));
        }
        if (text.empty())
            return false;
        const auto rest = afterOne(pattern, text.front());
        return rest && matches(*rest, text.substr(1));
    }

    /// Too slow: the answer means nothing.
    [[nodiscard]] bool gaveUp() const { return stepsLeft_ < 0; }

private:
    using Rest = std::optional<std::string_view>;

    [[nodiscard]] bool isBarrier(char c) const { return options_.pathname && c == '/'; }

    [[nodiscard]] int value(char c) const {
        const int byte = static_cast<unsigned char>(c);
        return options_.ignoreCase && byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
    }

    /// The rest of a pattern after its first element (not a star), if that matches `c`.
    [[nodiscard]] Rest afterOne(std::string_view pattern, char c) const {
        const Rest literal = value(pattern[0]) == value(c) ? Rest(pattern.substr(1)) : std::nullopt;
        switch (pattern[0]) {
            case '?':
                return isBarrier(c) ? std::nullopt : Rest(pattern.substr(1));
            case '\\':
                if (pattern.size() == 1 || value(pattern[1]) != value(c))
                    return std::nullopt;
                return pattern.substr(2);
            case '[':
                return afterBracket(pattern, c, literal);
            default:
                return literal;
        }
    }

    [[nodiscard]] Rest afterBracket(std::string_view pattern, char c, Rest literal) const {
        std::string_view rest = pattern.substr(1);
        const bool negated = rest.starts_with('!') || rest.starts_with('^');
        if (negated)
            rest.remove_prefix(1);
        bool held = false;
        for (bool isFirst = true; isFirst || !rest.starts_with(']'); isFirst = false) {
            const auto low = takeMember(rest);
            if (!low)
                return literal;  // unclosed
            auto high = low;
            if (rest.size() >= 2 && rest[0] == '-' && rest[1] != ']') {
                rest.remove_prefix(1);
                high = takeMember(rest);
                if (!high)
                    return literal;
            }
            held = held || (*low <= value(c) && value(c) <= *high);
        }
        if (isBarrier(c) || held == negated)
            return std::nullopt;
        return rest.substr(1);
    }

    [[nodiscard]] std::optional<int> takeMember(std::string_view& rest) const {
        if (rest.starts_with('\\'))
            rest.remove_prefix(1);
        if (rest.empty())
            return std::nullopt;
        const int member = value(rest.front());
        rest.remove_prefix(1);
        return member;
    }

    GlobOptions options_;
    int stepsLeft_ = 20'000;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const GlobOptions options{.pathname = (data[0] & 1U) != 0, .ignoreCase = (data[0] & 2U) != 0};
    const std::string_view input(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string_view pattern = input.substr(0, input.find('\0'));
    const std::string_view text =
        pattern.size() < input.size() ? input.substr(pattern.size() + 1) : std::string_view();

    const bool answer = ulvak::globMatches(pattern, text, options);
    SlowMatcher slow(options);
    const bool expected = slow.matches(pattern, text);
    if (!slow.gaveUp() && answer != expected)
        std::abort();
    return 0;
}

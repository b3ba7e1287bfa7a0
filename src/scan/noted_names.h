#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ulvak {

/// Names that a walk takes note of where it meets them, so that nobody has to look for them on the disk
/// later. Immutable; thread-safe.
class NotedNames {
public:
    /// The rest of a longer list is not noted.
    static constexpr std::size_t maxNames = 512;
    using Id = std::uint16_t;
    using Set = std::bitset<maxNames>;

    /// File names, or patterns if they contain "*"; case-sensitive.
    explicit NotedNames(std::vector<std::string> names);

    /// The id of a name or pattern, as given; nullopt if it is not noted.
    [[nodiscard]] std::optional<Id> find(std::string_view name) const;

    /// Whether all that was given is noted.
    [[nodiscard]] bool isWhole() const { return isWhole_; }

    /// Adds those that match an entry's name.
    void note(std::string_view name, Set& seen) const {
        if (name.empty())
            return;
        if (mayBeLiteral_[key(name)])
            noteLiteral(name, seen);
        const auto& beginning = beginning_[static_cast<unsigned char>(name.front())];
        if (!beginning.empty())
            notePatterns(beginning, name, seen);
        const auto& ending = ending_[static_cast<unsigned char>(name.back())];
        if (!ending.empty())
            notePatterns(ending, name, seen);
    }

    [[nodiscard]] static std::vector<Id> ids(const Set& seen);

private:
    struct Pattern {
        Id id = 0;
        std::string begin;      ///< before the "*"
        std::string end;        ///< after it
        bool isSimple = false;  ///< a "*" is all that is special in it
    };
    using Patterns = std::vector<Pattern>;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    static constexpr std::size_t keys = 1 << 14;
    /// Tells nearly all other names from those to note without reading them: this runs for every file.
    [[nodiscard]] static std::size_t key(std::string_view name) {
        const auto first = static_cast<unsigned char>(name.front());
        const auto last = static_cast<unsigned char>(name.back());
        return (first + std::size_t{61} * last + 1031 * name.size()) % keys;
    }
    void noteLiteral(std::string_view name, Set& seen) const;
    void notePatterns(const Patterns& patterns, std::string_view name, Set& seen) const;

    std::vector<std::string> names_;
    bool isWhole_ = true;
    std::unordered_map<std::string, Id, Hash, std::equal_to<>> ids_;
    std::bitset<keys> mayBeLiteral_;
    std::array<Patterns, 256> beginning_;  ///< by their first character
    std::array<Patterns, 256> ending_;     ///< those that begin with "*", by their last
};

}  // namespace ulvak

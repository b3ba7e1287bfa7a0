#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "classify/rule.h"

namespace ulvak {

/// Path patterns by their components, so that a path is compared only with what it has in common with them.
/// Case-insensitive. Immutable once built; thread-safe then.
class PatternTree {
public:
    using Components = std::span<const std::string_view>;
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    struct Node;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    struct Branch {
        std::string component;  ///< as written
        std::unique_ptr<Node> node;
    };
    struct Node {
        std::unordered_map<std::string, Branch, Hash, std::equal_to<>> literal;  ///< by the folded component
        std::vector<Branch> wild;
        std::uint32_t rule = none;  ///< the first of the rules whose pattern ends here
        bool isKept = false;        ///< one of them names something to keep, and not nearly everything
        bool keepsBelow = false;    ///< `isKept` of a node below
    };

    /// Whether patterns with these components can be added: the others mean something else when they are
    /// split.
    [[nodiscard]] static bool accepts(std::string_view relativePattern);

    /// Rules are added in the order in which they are asked.
    void add(Components pattern, std::uint32_t rule, bool isKept);

    /// The first rule that matches; `none` if no rule does. `folded` is `path` in lower case.
    [[nodiscard]] std::uint32_t first(Components path, Components folded) const;

    /// Where patterns for something inside the item at `path` continue, if they name something to keep.
    [[nodiscard]] std::vector<const Node*> keptBelow(Components path, Components folded) const;

private:
    template <typename Visit>
    static void descend(const Node& node, Components path, Components folded, const Visit& visit);

    Node root_;
};

}  // namespace ulvak

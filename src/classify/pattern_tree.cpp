#include "classify/pattern_tree.h"

#include <algorithm>
#include <utility>

#include "classify/specificity.h"
#include "core/glob.h"
#include "platform/ascii.h"

namespace ulvak {
namespace {

constexpr GlobOptions options{.pathname = true, .ignoreCase = true};

std::string folded(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return platform::lowerAscii(c); });
    return result;
}

}  // namespace

bool PatternTree::accepts(std::string_view relativePattern) {
    if (relativePattern.empty())
        return true;
    if (!relativePattern.starts_with('/') || relativePattern.contains('\\'))
        return false;
    const std::size_t open = relativePattern.find('[');
    return open == std::string_view::npos ||
           std::ranges::all_of(components(relativePattern), [](std::string_view component) {
               return std::ranges::count(component, '[') == std::ranges::count(component, ']');
           });
}

void PatternTree::add(Components pattern, std::uint32_t rule, bool isKept) {
    Node* node = &root_;
    for (const std::string_view component : pattern) {
        node->keepsBelow = node->keepsBelow || isKept;
        Branch* branch = nullptr;
        if (componentSpecificity(component) == literalSpecificity) {
            branch = &node->literal[folded(component)];
        } else {
            const auto known = std::ranges::find(node->wild, component, &Branch::component);
            branch = known != node->wild.end() ? &*known : &node->wild.emplace_back();
        }
        if (!branch->node) {
            branch->component = component;
            branch->node = std::make_unique<Node>();
        }
        node = branch->node.get();
    }
    node->rule = std::min(node->rule, rule);
    node->isKept = node->isKept || isKept;
}

/// Calls `visit` with every node whose pattern matches the whole path.
template <typename Visit>
void PatternTree::descend(const Node& node, Components path, Components folded, const Visit& visit) {
    if (path.empty()) {
        visit(node);
        return;
    }
    if (const auto found = node.literal.find(folded.front()); found != node.literal.end())
        descend(*found->second.node, path.subspan(1), folded.subspan(1), visit);
    for (const Branch& branch : node.wild) {
        if (branch.component == "*" || globMatches(branch.component, path.front(), options))
            descend(*branch.node, path.subspan(1), folded.subspan(1), visit);
    }
}

std::uint32_t PatternTree::first(Components path, Components folded) const {
    std::uint32_t best = none;
    descend(root_, path, folded, [&](const Node& node) { best = std::min(best, node.rule); });
    return best;
}

std::vector<const PatternTree::Node*> PatternTree::keptBelow(Components path, Components folded) const {
    std::vector<const Node*> nodes;
    descend(root_, path, folded, [&](const Node& node) {
        if (node.keepsBelow)
            nodes.push_back(&node);
    });
    return nodes;
}

}  // namespace ulvak

#include "scan/skip_tree.h"

namespace ulvak {

void SkipTree::addVolume(std::string_view relativePath) {
    const std::size_t slash = relativePath.rfind('/');
    if (slash == std::string_view::npos)
        volumes_.emplace(relativePath);
    else
        nodeAt(relativePath.substr(0, slash)).volumes_.emplace(relativePath.substr(slash + 1));
}

const SkipTree* SkipTree::below(std::string_view name) const {
    const auto found = below_.find(name);
    return found == below_.end() ? nullptr : found->second.get();
}

SkipTree& SkipTree::nodeAt(std::string_view relativePath) {
    SkipTree* node = this;
    while (!relativePath.empty()) {
        const std::size_t slash = relativePath.find('/');
        auto& next = node->below_[std::string(relativePath.substr(0, slash))];
        if (!next)
            next = std::make_unique<SkipTree>();
        node = next.get();
        relativePath.remove_prefix(slash == std::string_view::npos ? relativePath.size() : slash + 1);
    }
    return *node;
}

}  // namespace ulvak

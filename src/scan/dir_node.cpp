#include "scan/dir_node.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ulvak {

DirNodes::DirNodes() noexcept = default;
DirNodes::DirNodes(std::vector<DirNode> nodes) noexcept : std::vector<DirNode>(std::move(nodes)) {}
DirNodes::DirNodes(DirNodes&& other) noexcept = default;

DirNodes& DirNodes::operator=(DirNodes&& other) noexcept {
    DirNodes old(std::move(*this));
    std::vector<DirNode>::operator=(std::move(other));
    return *this;
}

DirNodes::~DirNodes() {
    std::vector<DirNode> rest(std::move(*this));
    while (!rest.empty()) {
        std::vector<DirNode> below(std::move(rest.back().children));
        rest.pop_back();
        std::ranges::move(below, std::back_inserter(rest));
    }
}

}  // namespace ulvak

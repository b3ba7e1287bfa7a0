#include "scan/dir_node.h"

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
    DirNodes* level = this;
    while (level != this || !level->empty()) {
        if (level->empty()) {
            level = level->around_;
            level->pop_back();
        } else if (DirNodes& below = level->back().children; below.empty()) {
            level->pop_back();
        } else {
            below.around_ = level;
            level = &below;
        }
    }
}

}  // namespace ulvak

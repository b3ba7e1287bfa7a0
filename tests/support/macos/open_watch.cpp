#include "support/open_watch.h"

namespace ulvak::test {

std::optional<std::string> OpenWatch::whyNone() {
    return "what is opened can be watched by root only, with rights that a test does not ask for";
}

OpenWatch::OpenWatch(const std::string& /*path*/) {}

OpenWatch::~OpenWatch() {
    (void)handle_;  // there is none
}

std::vector<std::string> OpenWatch::opened() const {
    return {};
}

}  // namespace ulvak::test

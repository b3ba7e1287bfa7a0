#include "support/open_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>

namespace ulvak::test {

std::optional<std::string> OpenWatch::whyNone() {
    return std::nullopt;
}

OpenWatch::OpenWatch(const std::string& path)
    : handle_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      watch_(::inotify_add_watch(handle_, path.c_str(), IN_OPEN)) {}

OpenWatch::~OpenWatch() {
    ::close(handle_);
}

std::vector<std::string> OpenWatch::opened() const {
    std::vector<std::string> names;
    alignas(inotify_event) std::array<char, 65'536> buffer{};
    for (;;) {
        const ssize_t count = ::read(handle_, buffer.data(), buffer.size());
        if (count <= 0)
            return names;
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            if (event->len > 0)
                names.emplace_back(event->name);
            at += sizeof(inotify_event) + event->len;
        }
    }
}

}  // namespace ulvak::test

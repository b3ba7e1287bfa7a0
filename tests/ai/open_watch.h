#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace ulvak::test {

/// Sees what is opened of what lies in a folder.
class OpenWatch {
public:
    explicit OpenWatch(const std::string& path)
        : handle_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
          watch_(::inotify_add_watch(handle_, path.c_str(), IN_OPEN)) {}
    ~OpenWatch() { ::close(handle_); }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    [[nodiscard]] bool isWatching() const { return watch_ >= 0; }

    /// Names opened since the last call; the folder itself has none.
    [[nodiscard]] std::vector<std::string> opened() const {
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

private:
    int handle_;
    int watch_;
};

}  // namespace ulvak::test

#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace ulvak::platform {

/// Owns a file descriptor. Move-only. Closing preserves `errno`, so that a failing function may close before
/// it reports. No thread may use the descriptor while another closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes ownership of a system call's result; a negative number means none.
    explicit FileDescriptor(int number) : number_(number) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        other.close();
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    /// For system calls; still owned by this object. Negative if not open.
    [[nodiscard]] int get() const { return number_; }
    /// Transfers ownership to the caller.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    void close() {
        if (number_ < 0)
            return;
        const int error = errno;
        ::close(std::exchange(number_, -1));  // an error does not matter: it is closed either way
        errno = error;
    }

private:
    int number_ = -1;
};

}  // namespace ulvak::platform

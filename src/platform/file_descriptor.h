#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace ulvak::platform {

/// Owns one descriptor of this process: of an open file or folder, or of an end of a pipe. Move-only; closes
/// it when it goes, and leaves `errno` alone then: whoever fails may close first and report after. No thread
/// may use it while another closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes over what a system call has returned; a negative number is none.
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
    /// For system calls; stays this object's. Negative when it is not open.
    [[nodiscard]] int get() const { return number_; }
    /// From here on it is the caller's.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    void close() {
        if (number_ < 0)
            return;
        const int error = errno;
        ::close(std::exchange(number_, -1));  // what it fails with concerns nobody: it is closed all the same
        errno = error;
    }

private:
    int number_ = -1;
};

}  // namespace ulvak::platform

#include "platform/directory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/posix/system.h"

namespace ulvak::platform {

using posix::lastError;

Directory& Directory::operator=(Directory&& other) noexcept {
    std::swap(handle_, other.handle_);
    other.close();
    return *this;
}

void Directory::close() {
    if (handle_ >= 0)
        ::close(std::exchange(handle_, -1));
}

std::expected<Directory, std::error_code> Directory::open(const std::string& path) {
    const int handle = posix::openFolder(AT_FDCWD, path.c_str());
    if (handle < 0)
        return std::unexpected(lastError());
    return Directory(handle);
}

std::expected<Directory, std::error_code> Directory::openBelow(const char* relativePath) const {
    std::string_view rest = relativePath;
    Directory passed;  // the last folder reached on the way
    for (;;) {
        const int parent = passed.isOpen() ? passed.handle_ : handle_;
        const std::size_t length = posix::stepLength(rest);
        if (length == rest.size()) {
            const char* last = relativePath + (std::string_view(relativePath).size() - rest.size());
            const int handle = posix::openFolderBelow(parent, last);
            if (handle < 0)
                return std::unexpected(lastError());
            return Directory(handle);
        }
        const std::string step(rest.substr(0, length));
        const int handle = posix::openStepBelow(parent, step.c_str());
        if (handle < 0)
            return std::unexpected(lastError());
        passed = Directory(handle);
        rest.remove_prefix(length + 1);
    }
}

std::expected<Directory, std::error_code> Directory::openParent() const {
    const int handle = posix::openFolder(handle_, "..");
    if (handle < 0)
        return std::unexpected(lastError());
    return Directory(handle);
}

bool Directory::isAt(const std::string& path) const {
    struct stat own{};
    struct stat other{};
    return ::fstat(handle_, &own) == 0 && ::stat(path.c_str(), &other) == 0 && own.st_dev == other.st_dev &&
           own.st_ino == other.st_ino;
}

void EntryReader::start(const Directory& directory, const NameSet* untouched) {
    handle_ = directory.handle();
    untouched_ = untouched;
    position_ = end_ = 0;
    own_.taken = 0;
    turns_ = &own_;
    piece_ = 0;
    error_.clear();
}

void EntryReader::join(EntryReader& first) {
    handle_ = first.handle_;
    untouched_ = first.untouched_;
    position_ = end_ = 0;
    turns_ = &first.own_;
    piece_ = 0;
    error_.clear();
}

std::size_t spareHandles() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    const std::size_t open = posix::openHandles().value_or(0);
    const auto most = static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, 1 << 20));
    return most > open ? most - open : 0;
}

bool livesElsewhere(std::error_code error) {
    return error == std::errc::resource_deadlock_would_occur;
}

bool isOutOfHandles(std::error_code error) {
    return error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
}

}  // namespace ulvak::platform

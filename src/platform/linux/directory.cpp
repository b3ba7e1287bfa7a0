#include "platform/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/linux/file_stamp.h"
#include "platform/linux/open_for_listing.h"

namespace ulvak::platform {
namespace {

constexpr std::size_t bufferSize = 64 * 1024;
/// The longest path that the kernel takes in one call, without the terminating zero.
constexpr std::size_t longestPath = 4095;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// `openat2` that crosses neither links nor mount points; -1 with `errno` set.
int openWithin(int parent, const char* path, int flags) {
    open_how how{};
    how.flags = static_cast<unsigned>(flags);
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;
    return static_cast<int>(::syscall(SYS_openat2, parent, path, &how, sizeof how));
}

/// Kernels before 5.6 do not know `openat2`, and some sandboxes refuse it.
bool hasOpenat2() {
    static const bool answer = [] {
        const int handle = openWithin(AT_FDCWD, ".", O_PATH | O_CLOEXEC);
        if (handle < 0)
            return errno != ENOSYS && errno != EPERM;
        ::close(handle);
        return true;
    }();
    return answer;
}

/// The part of a path that one call opens: all of it, or as much as fits and ends before a "/". Without
/// `openat2` a single name, for `O_NOFOLLOW` guards only the last one.
std::size_t stepLength(std::string_view path) {
    if (!hasOpenat2())
        return std::min(path.find('/'), path.size());
    if (path.size() <= longestPath)
        return path.size();
    const std::size_t slash = path.rfind('/', longestPath);
    return slash == std::string_view::npos ? path.size() : slash;
}

/// The mount that an open folder belongs to; -1 when the kernel does not say.
int mountOf(int handle) {
    file_handle none{};  // no room for the handle itself, which nobody wants: the mount is told all the same
    int mount = -1;
    const int result = ::name_to_handle_at(handle, "", &none, &mount, AT_EMPTY_PATH);
    return result == 0 || errno == EOVERFLOW ? mount : -1;
}

/// As `openWithin` for a single name, where there is no `openat2`.
int openName(int parent, const char* name, int flags) {
    const int handle = ::openat(parent, name, flags | O_NOFOLLOW);
    if (handle >= 0 && mountOf(handle) != mountOf(parent)) {
        ::close(handle);
        errno = EXDEV;
        return -1;
    }
    return handle;
}

int openStep(int parent, const char* path, int flags) {
    return hasOpenat2() ? openWithin(parent, path, flags) : openName(parent, path, flags);
}

EntryKind kindOf(const struct statx& info) {
    if (S_ISLNK(info.stx_mode))
        return EntryKind::link;
    if (!S_ISDIR(info.stx_mode))
        return EntryKind::file;
    const bool isMountPoint = (info.stx_attributes & info.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
    return isMountPoint ? EntryKind::volume : EntryKind::directory;
}

}  // namespace

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
    const int handle = openForListing([&](int flags) { return ::open(path.c_str(), flags); });
    if (handle < 0)
        return std::unexpected(lastError());
    return Directory(handle);
}

std::expected<Directory, std::error_code> Directory::openBelow(const char* relativePath) const {
    std::string_view rest = relativePath;
    Directory passed;  // the last folder reached on the way
    for (;;) {
        const int parent = passed.isOpen() ? passed.handle_ : handle_;
        const std::size_t length = stepLength(rest);
        if (length == rest.size()) {
            const char* last = relativePath + (std::string_view(relativePath).size() - rest.size());
            const int handle = openForListing([&](int flags) { return openStep(parent, last, flags); });
            if (handle < 0)
                return std::unexpected(lastError());
            return Directory(handle);
        }
        const std::string step(rest.substr(0, length));
        const int handle = openStep(parent, step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (handle < 0)
            return std::unexpected(lastError());
        passed = Directory(handle);
        rest.remove_prefix(length + 1);
    }
}

std::expected<Directory, std::error_code> Directory::openParent() const {
    const int handle = openForListing([&](int flags) { return ::openat(handle_, "..", flags); });
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

EntryReader::EntryReader() : buffer_(std::make_unique_for_overwrite<std::byte[]>(bufferSize)) {}
EntryReader::~EntryReader() = default;

void EntryReader::start(const Directory& directory, const NameSet* untouched) {
    handle_ = directory.handle();
    untouched_ = untouched;
    position_ = end_ = 0;
    error_.clear();
}

const DirectoryEntry* EntryReader::next() {
    for (;;) {
        if (position_ == end_) {
            const auto count = ::syscall(SYS_getdents64, handle_, buffer_.get(), bufferSize);
            if (count <= 0) {
                if (count < 0)
                    error_ = lastError();
                return nullptr;
            }
            position_ = 0;
            end_ = static_cast<std::size_t>(count);
        }
        // The kernel's record: inode, offset, record length, type, name with its zero byte.
        const std::byte* record = buffer_.get() + position_;
        unsigned short recordLength = 0;
        std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
        position_ += recordLength;
        const auto type = std::to_integer<unsigned char>(record[offsetof(dirent64, d_type)]);
        const char* name = reinterpret_cast<const char*>(record + offsetof(dirent64, d_name));
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;

        entry_ = {.name = name};
        const bool mayBeFolder = type == DT_DIR || type == DT_UNKNOWN;
        if (mayBeFolder && untouched_ != nullptr && untouched_->contains(entry_.name))
            continue;
        if (type == DT_LNK) {
            entry_.kind = EntryKind::link;
            return &entry_;
        }
        struct statx info;  // NOLINT(cppcoreguidelines-pro-type-member-init): 256 bytes that the kernel fills
        if (::statx(handle_, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                    STATX_TYPE | STATX_BLOCKS | STATX_MTIME, &info) != 0)
            continue;
        entry_.kind = kindOf(info);
        if (entry_.kind == EntryKind::file)
            entry_.allocatedSize = allocatedBytes(info);
        if ((info.stx_mask & STATX_MTIME) != 0)
            entry_.modified = fileTime(info.stx_mtime);
        return &entry_;
    }
}

std::size_t spareHandles() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    std::size_t open = 0;
    if (auto own = Directory::open("/proc/self/fd")) {
        EntryReader reader;
        reader.start(*own);
        while (reader.next() != nullptr)
            ++open;
    }
    const auto most = static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, 1 << 20));
    return most > open ? most - open : 0;
}

bool isOutOfHandles(std::error_code error) {
    return error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
}

}  // namespace ulvak::platform

#include "platform/directory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/ascii.h"
#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

using posix::lastError;

/// Lower case.
constexpr std::array<std::string_view, 24> packageExtensions = {
    "app",          "aplibrary",     "appex",    "band",      "bundle",       "fcpbundle",
    "framework",    "imovielibrary", "kext",     "logicx",    "lrlibrary",    "musiclibrary",
    "photolibrary", "photoslibrary", "plugin",   "pvm",       "sparsebundle", "trace",
    "tvlibrary",    "utm",           "vmwarevm", "xcarchive", "xcodeproj",    "xcworkspace"};

}  // namespace

std::expected<Directory, std::error_code> Directory::from(FileDescriptor descriptor) {
    if (!descriptor.isOpen())
        return std::unexpected(lastError());
    Directory directory;
    directory.descriptor_ = std::move(descriptor);
    return directory;
}

std::expected<Directory, std::error_code> Directory::open(const std::string& path) {
    return from(posix::openFolder(AT_FDCWD, path.c_str()));
}

std::expected<Directory, std::error_code> Directory::openBelow(const char* relativePath) const {
    std::string_view rest = relativePath;
    FileDescriptor passed;  // the last folder reached so far
    for (;;) {
        const int parent = passed.isOpen() ? passed.get() : handle();
        const std::size_t length = posix::stepLength(rest);
        if (length == rest.size()) {
            const char* last = relativePath + (std::string_view(relativePath).size() - rest.size());
            return from(posix::openFolderBelow(parent, last));
        }
        const std::string step(rest.substr(0, length));
        passed = posix::openStepBelow(parent, step.c_str());
        if (!passed.isOpen())
            return std::unexpected(lastError());
        rest.remove_prefix(length + 1);
    }
}

std::expected<Directory, std::error_code> Directory::openParent() const {
    return from(posix::openFolder(handle(), ".."));
}

std::optional<ItemIdentity> Directory::identity() const {
    return posix::identityAt(handle(), "");
}

bool Directory::isAt(const std::string& path) const {
    struct stat own{};
    struct stat other{};
    return ::fstat(handle(), &own) == 0 && ::stat(path.c_str(), &other) == 0 && own.st_dev == other.st_dev &&
           own.st_ino == other.st_ino;
}

void EntryReader::start(const Directory& directory, const NameSet* excluded) {
    handle_ = directory.handle();
    excluded_ = excluded;
    position_ = end_ = 0;
    own_.taken = 0;
    turns_ = &own_;
    piece_ = 0;
    error_.clear();
}

void EntryReader::join(EntryReader& first) {
    handle_ = first.handle_;
    excluded_ = first.excluded_;
    position_ = end_ = 0;
    turns_ = &first.own_;
    piece_ = 0;
    error_.clear();
}

std::expected<bool, std::error_code> EntryReader::readPiece(const Directory& directory) {
    start(directory);
    const bool isThere = fill();
    if (error_)
        return std::unexpected(error_);
    return isThere;
}

std::size_t spareHandles() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    const std::size_t open = posix::openHandles().value_or(0);
    const auto most = static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, 1 << 20));
    return most > open ? most - open : 0;
}

bool isDataless(std::error_code error) {
    return error == std::errc::resource_deadlock_would_occur;
}

bool isOutOfHandles(std::error_code error) {
    return error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
}

bool isPackageName(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return std::ranges::find(packageExtensions, lowerAscii(name.substr(dot + 1))) != packageExtensions.end();
}

}  // namespace ulvak::platform

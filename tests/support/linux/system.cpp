#include "support/system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "platform/files.h"
#include "support/isolation.h"

namespace ulvak::test {
namespace {

std::string systemError(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

/// An unprivileged user may mount in a user namespace of their own; maps their ids to themselves.
std::optional<std::string> separateUsers() {
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER) != 0)
        return systemError("no user namespace of its own");
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
    return std::nullopt;
}

}  // namespace

std::optional<std::string> detail::separateMounts() {
    if (::geteuid() != 0) {
        if (auto reason = separateUsers())
            return reason;
    }
    if (::unshare(CLONE_NEWNS) != 0)
        return systemError("no mount namespace of its own");
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return systemError("cannot make the mounts private");
    return std::nullopt;
}

testing::AssertionResult mountMemory(const std::string& path, const std::string& options) {
    if (::mount("memory", path.c_str(), "tmpfs", 0, options.c_str()) != 0)
        return testing::AssertionFailure() << systemError("mount at " + path);
    return testing::AssertionSuccess();
}

testing::AssertionResult mountAgain(const std::string& source, const std::string& path) {
    if (::mount(source.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) != 0)
        return testing::AssertionFailure() << systemError("mount at " + path);
    return testing::AssertionSuccess();
}

int exchange(const std::string& one, const std::string& other) {
    return ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
}

int allocate(int handle, std::int64_t bytes) {
    return ::fallocate(handle, 0, 0, bytes);
}

std::optional<std::string> whyNoTrashOfItsOwn() {
    return std::nullopt;
}

std::size_t detail::threads() {
#ifdef ULVAK_THREAD_SANITIZER
    constexpr std::size_t sanitizers = 1;
#else
    constexpr std::size_t sanitizers = 0;
#endif
    return platform::listNames("/proc/self/task").size() - sanitizers;
}

std::size_t openHandles() {
    return platform::listNames("/proc/self/fd").size();
}

std::vector<std::int64_t> stateOf(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return {info.st_size,         info.st_blocks,
            info.st_mode,         info.st_mtim.tv_sec,
            info.st_mtim.tv_nsec, info.st_ctim.tv_sec,
            info.st_ctim.tv_nsec, static_cast<std::int64_t>(info.st_ino)};
}

FileTime modifiedOf(const struct stat& info) {
    return FileTime(std::chrono::seconds(info.st_mtim.tv_sec)) +
           std::chrono::duration_cast<FileTime::duration>(std::chrono::nanoseconds(info.st_mtim.tv_nsec));
}

}  // namespace ulvak::test

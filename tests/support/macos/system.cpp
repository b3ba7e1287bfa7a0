#include "support/system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdio.h>  // NOLINT(modernize-deprecated-headers): renamex_np
#include <sys/stat.h>
#include <unistd.h>

#include "support/isolation.h"

namespace ulvak::test {
namespace {

constexpr const char* noMounts = "this system has no mounts of a process's own";

}  // namespace

std::optional<std::string> detail::separateMounts() {
    return noMounts;
}

testing::AssertionResult mountMemory(const std::string& /*path*/, const std::string& /*options*/) {
    return testing::AssertionFailure() << noMounts;
}

testing::AssertionResult mountAgain(const std::string& /*source*/, const std::string& /*path*/) {
    return testing::AssertionFailure() << noMounts;
}

int exchange(const std::string& one, const std::string& other) {
    return ::renamex_np(one.c_str(), other.c_str(), RENAME_SWAP);
}

int allocate(int handle, std::int64_t bytes) {
    fstore_t room{.fst_flags = F_ALLOCATEALL,
                  .fst_posmode = F_PEOFPOSMODE,
                  .fst_offset = 0,
                  .fst_length = bytes,
                  .fst_bytesalloc = 0};
    return ::fcntl(handle, F_PREALLOCATE, &room) == -1 ? -1 : ::ftruncate(handle, bytes);
}

std::optional<std::string> whyNoTrashOfItsOwn() {
    return "this system knows one Trash of a user, wherever HOME leads";
}

std::size_t detail::threads() {
    return 1;
}

std::size_t openHandles() {
    // The system assigns the lowest free number, and no test holds more handles than this.
    constexpr int maxHandles = 4096;
    std::size_t open = 0;
    for (int handle = 0; handle < maxHandles; ++handle)
        open += ::fcntl(handle, F_GETFD) != -1 ? 1U : 0U;
    return open;
}

std::vector<std::int64_t> stateOf(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return {info.st_size,
            info.st_blocks,
            info.st_mode,
            info.st_mtimespec.tv_sec,
            info.st_mtimespec.tv_nsec,
            info.st_ctimespec.tv_sec,
            info.st_ctimespec.tv_nsec,
            static_cast<std::int64_t>(info.st_ino)};
}

FileTime modifiedOf(const struct stat& info) {
    return FileTime(std::chrono::seconds(info.st_mtimespec.tv_sec)) +
           std::chrono::duration_cast<FileTime::duration>(
               std::chrono::nanoseconds(info.st_mtimespec.tv_nsec));
}

}  // namespace ulvak::test

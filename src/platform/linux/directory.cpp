#include "platform/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

constexpr std::size_t bufferSize = 64 * 1024;

/// One entry as written by `getdents64`: inode, offset, record length, type, NUL-terminated name.
struct DirectoryRecord {
    const char* name = nullptr;  ///< in the buffer
    unsigned char type = DT_UNKNOWN;
    std::size_t length = 0;  ///< bytes to the next record

    [[nodiscard]] bool isDotOrDotDot() const {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }
};

/// `start` must be where the kernel began a record.
DirectoryRecord directoryRecordAt(const std::byte* start) {
    unsigned short length = 0;
    std::memcpy(&length, start + offsetof(dirent64, d_reclen), sizeof length);
    return {.name = reinterpret_cast<const char*>(start + offsetof(dirent64, d_name)),
            .type = std::to_integer<unsigned char>(start[offsetof(dirent64, d_type)]),
            .length = length};
}

EntryKind kindOf(const struct statx& info) {
    if (S_ISLNK(info.stx_mode))
        return EntryKind::link;
    if (!S_ISDIR(info.stx_mode))
        return EntryKind::file;
    const bool isMountPoint = (info.stx_attributes & info.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
    return isMountPoint ? EntryKind::volume : EntryKind::directory;
}

/// Only needed for several hard links. Kernel device numbers have 12 (major) and 20 (minor) bits.
void describeNames(DirectoryEntry& entry, const struct statx& info) {
    constexpr unsigned needed = STATX_NLINK | STATX_INO;
    if (info.stx_nlink < 2 || (info.stx_mask & needed) != needed)
        return;
    entry.names = info.stx_nlink;
    entry.volume = (info.stx_dev_major << 20U) | info.stx_dev_minor;
    entry.number = info.stx_ino;
}

/// Fills in the kernel's description; false if there is none.
bool describe(DirectoryEntry& entry, int folder) {
    struct statx info;  // NOLINT(cppcoreguidelines-pro-type-member-init): 256 bytes that the kernel fills
    if (::statx(folder, entry.terminatedName(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                STATX_TYPE | STATX_BLOCKS | STATX_MTIME | STATX_NLINK | STATX_INO, &info) != 0)
        return false;
    entry.kind = kindOf(info);
    entry.isRegularFile = S_ISREG(info.stx_mode);
    if (entry.kind == EntryKind::file) {
        entry.allocatedSize = posix::allocatedBytes(info.stx_blocks);
        describeNames(entry, info);
    }
    if ((info.stx_mask & STATX_MTIME) != 0)
        entry.modified = posix::fileTime(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
    return true;
}

}  // namespace

EntryReader::EntryReader(Attributes asked)
    : asked_(asked), buffer_(std::make_unique_for_overwrite<std::byte[]>(bufferSize)) {}
EntryReader::~EntryReader() = default;

bool EntryReader::fill() {
    const std::scoped_lock turn(turns_->mutex);
    const auto count = ::syscall(SYS_getdents64, handle_, buffer_.get(), bufferSize);
    if (count <= 0) {
        if (count < 0)
            error_ = posix::lastError();
        return false;
    }
    piece_ = turns_->taken++;
    position_ = 0;
    end_ = static_cast<std::size_t>(count);
    return true;
}

const DirectoryEntry* EntryReader::next() {
    for (;;) {
        if (const DirectoryEntry* entry = nextOfPiece())
            return entry;
        if (!fill())
            return nullptr;
    }
}

const DirectoryEntry* EntryReader::nextOfPiece() {
    while (position_ < end_) {
        const DirectoryRecord record = directoryRecordAt(buffer_.get() + position_);
        position_ += record.length;
        if (record.isDotOrDotDot())
            continue;

        entry_ = {.name = record.name};
        const bool mayBeFolder = record.type == DT_DIR || record.type == DT_UNKNOWN;
        if (mayBeFolder && excluded_ != nullptr && excluded_->contains(entry_.name))
            continue;
        if (record.type == DT_LNK) {
            entry_.kind = EntryKind::link;
            return &entry_;
        }
        if (asked_ == Attributes::listed) {
            entry_.kind = record.type == DT_DIR ? EntryKind::directory : EntryKind::file;
            entry_.isRegularFile = record.type == DT_REG;
            return &entry_;
        }
        if (describe(entry_, handle_))
            return &entry_;
    }
    return nullptr;
}

}  // namespace ulvak::platform

#include "platform/directory.h"

#include <sys/attr.h>
#include <sys/stat.h>
#include <unistd.h>
#if __has_include(<sys/vnode.h>)
#include <sys/vnode.h>
#endif

#include <cstddef>
#include <span>

#include "platform/macos/bulk_listing.h"
#include "platform/macos/bulk_read.h"
#include "platform/macos/bulk_record.h"
#include "platform/posix/file_stamp.h"
#include "platform/posix/system.h"

namespace ulvak::platform {

static_assert(BulkBits::returnedAttributes == ATTR_CMN_RETURNED_ATTRS);
static_assert(BulkBits::error == ATTR_CMN_ERROR);
static_assert(BulkBits::name == ATTR_CMN_NAME);
static_assert(BulkBits::objectType == ATTR_CMN_OBJTYPE);
static_assert(BulkBits::volume == ATTR_CMN_DEVID);
static_assert(BulkBits::modified == ATTR_CMN_MODTIME);
static_assert(BulkBits::number == ATTR_CMN_FILEID);
static_assert(BulkBits::mountStatus == ATTR_DIR_MOUNTSTATUS);
static_assert(BulkBits::names == ATTR_FILE_LINKCOUNT);
static_assert(BulkBits::totalAllocated == ATTR_FILE_ALLOCSIZE);
static_assert(BulkBits::dataAllocated == ATTR_FILE_DATAALLOCSIZE);
static_assert(sizeof(attribute_set_t) == 5 * sizeof(std::uint32_t));
static_assert(sizeof(attrreference_t) == 8 && sizeof(timespec) == 16);
static_assert(DIR_MNTSTATUS_MNTPOINT == 1 && DIR_MNTSTATUS_TRIGGER == 2);
#if __has_include(<sys/vnode.h>)
static_assert(VDIR == 2 && VLNK == 5);
#endif

namespace {

constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// What the walk needs to know of each entry.
attrlist walkAttributes() {
    return {.bitmapcount = ATTR_BIT_MAP_COUNT,
            .reserved = 0,
            .commonattr = BulkBits::common,
            .volattr = 0,
            .dirattr = BulkBits::folder,
            .fileattr = BulkBits::file,
            .forkattr = 0};
}

}  // namespace

attrlist nameAttributes() {
    attrlist wanted = walkAttributes();
    wanted.commonattr =
        BulkBits::returnedAttributes | BulkBits::error | BulkBits::name | BulkBits::objectType;
    wanted.dirattr = wanted.fileattr = 0;
    return wanted;
}

int readBulk(int folder, attrlist attributes, std::span<std::byte> buffer) {
    const QuietAccess quiet;
    return ::getattrlistbulk(folder, &attributes, buffer.data(), buffer.size(), 0);
}

std::optional<FolderIdentity> Directory::identity() const {
    struct stat info{};
    if (::fstat(handle_, &info) != 0)
        return std::nullopt;
    return FolderIdentity{.volume = posix::volumeNumber(info),
                          .number = info.st_ino,
                          .born = fileTime(info.st_birthtimespec.tv_sec, info.st_birthtimespec.tv_nsec)};
}

EntryReader::EntryReader() : buffer_(std::make_unique_for_overwrite<std::byte[]>(bufferSize)) {}
EntryReader::~EntryReader() = default;

/// `end_` counts the records of the piece that are left.
const DirectoryEntry* EntryReader::next() {
    BulkListing listing({buffer_.get(), bufferSize}, position_, end_);
    const auto read = [this](std::span<std::byte> piece) {
        const std::scoped_lock turn(turns_->mutex);
        const int count = readBulk(handle_, walkAttributes(), piece);
        if (count > 0)
            piece_ = turns_->taken++;
        return count;
    };
    const auto entry = listing.nextEntry(read, untouched_, error_);
    if (!entry)
        return nullptr;
    entry_ = *entry;
    return &entry_;
}

}  // namespace ulvak::platform

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
static_assert(VREG == 1 && VDIR == 2 && VLNK == 5);
#endif

namespace {

constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// With `listed`, only name and type are requested.
attrlist attributesFor(Attributes asked) {
    constexpr std::uint32_t listed =
        BulkBits::returnedAttributes | BulkBits::error | BulkBits::name | BulkBits::objectType;
    const bool isAll = asked == Attributes::all;
    return {.bitmapcount = ATTR_BIT_MAP_COUNT,
            .reserved = 0,
            .commonattr = isAll ? BulkBits::common : listed,
            .volattr = 0,
            .dirattr = isAll ? BulkBits::folder : 0,
            .fileattr = isAll ? BulkBits::file : 0,
            .forkattr = 0};
}

/// Reads the next piece of a folder that several readers may share; sets `number` to its index. Updates no
/// access date and fetches no dataless folder.
template <typename Turns>
int readBulk(int folder, Attributes asked, Turns& turns, std::size_t& number, std::span<std::byte> piece) {
    const QuietAccess quiet;
    attrlist attributes = attributesFor(asked);
    const std::scoped_lock turn(turns.mutex);
    const int count = ::getattrlistbulk(folder, &attributes, piece.data(), piece.size(), 0);
    if (count > 0)
        number = turns.taken++;
    return count;
}

}  // namespace

EntryReader::EntryReader(Attributes asked)
    : asked_(asked), buffer_(std::make_unique_for_overwrite<std::byte[]>(bufferSize)) {}
EntryReader::~EntryReader() = default;

/// With `Attributes::listed`, `end_` counts the remaining records of the piece.
const DirectoryEntry* EntryReader::next() {
    if (asked_ == Attributes::listed) {
        const DirectoryEntry* entry = nextOfPiece();
        while (entry == nullptr && fill())
            entry = nextOfPiece();
        return entry;
    }
    BulkListing listing({buffer_.get(), bufferSize}, position_, end_);
    const auto read = [this](std::span<std::byte> piece) {
        return readBulk(handle_, asked_, *turns_, piece_, piece);
    };
    const auto entry = listing.nextEntry(read, excluded_, error_);
    if (!entry)
        return nullptr;
    entry_ = *entry;
    return &entry_;
}

bool EntryReader::fill() {
    if (error_)
        return false;
    BulkListing listing({buffer_.get(), bufferSize}, position_, end_);
    const int count = listing.readNames(
        [this](std::span<std::byte> piece) { return readBulk(handle_, asked_, *turns_, piece_, piece); });
    if (count < 0)
        error_ = posix::lastError();
    return count > 0;
}

const DirectoryEntry* EntryReader::nextOfPiece() {
    BulkListing listing({buffer_.get(), bufferSize}, position_, end_);
    do {
        const auto record = listing.nextName();
        if (!record)
            return nullptr;
        entry_ = listedEntryOf(*record);
    } while (entry_.kind == EntryKind::directory && excluded_ != nullptr && excluded_->contains(entry_.name));
    return &entry_;
}

}  // namespace ulvak::platform

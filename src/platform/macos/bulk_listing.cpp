#include "platform/macos/bulk_listing.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

/// The values of <sys/vnode.h>.
constexpr std::uint32_t fileType = 1;
constexpr std::uint32_t folderType = 2;
constexpr std::uint32_t linkType = 5;
/// A mount point, or an automount trigger.
constexpr std::uint32_t mountPointOrTrigger = 1U | 2U;

/// The attributes in a record, in the order in which the system writes the five groups.
struct AttributeSet {
    std::uint32_t common = 0;
    std::uint32_t volume = 0;
    std::uint32_t folder = 0;
    std::uint32_t file = 0;
    std::uint32_t fork = 0;

    /// Field positions depend on every field before, so an unknown one makes the rest unreadable.
    [[nodiscard]] bool hasOnlyWhatWasAsked() const {
        return (common & ~BulkBits::common) == 0 && volume == 0 && (folder & ~BulkBits::folder) == 0 &&
               (file & ~BulkBits::file) == 0 && fork == 0;
    }
};

/// Where a name is: offset from this field, and length including the NUL.
struct Reference {
    std::int32_t offset = 0;
    std::uint32_t length = 0;
};

struct Timestamp {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
};

/// Takes fields from the front of a record; no alignment required.
class Fields {
public:
    explicit Fields(std::span<const std::byte> record) : record_(record) {}

    /// False if the record ends before the field does.
    template <typename Field>
    bool take(Field& field) {
        if (record_.size() - position_ < sizeof field)
            return false;
        std::memcpy(&field, record_.data() + position_, sizeof field);
        position_ += sizeof field;
        return true;
    }

    /// The same, for a field that is present only if its bit is set.
    template <typename Field>
    bool takeIf(bool isThere, std::optional<Field>& field) {
        return !isThere || take(field.emplace());
    }

    [[nodiscard]] std::size_t position() const { return position_; }

private:
    std::span<const std::byte> record_;
    std::size_t position_ = 0;
};

/// The name a reference at `field` points to. nullopt if it points outside the record or is not terminated.
std::optional<std::string_view> nameAt(std::span<const std::byte> record, std::size_t field,
                                       const Reference& reference) {
    const std::int64_t begin = static_cast<std::int64_t>(field) + reference.offset;
    if (begin < 0 || begin > static_cast<std::int64_t>(record.size()) ||
        reference.length > record.size() - static_cast<std::size_t>(begin))
        return std::nullopt;
    const auto bytes = record.subspan(static_cast<std::size_t>(begin), reference.length);
    const auto end = std::ranges::find(bytes, std::byte{0});
    if (end == bytes.end())
        return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(bytes.data()),
                            static_cast<std::size_t>(end - bytes.begin()));
}

/// A name with a "/" would not be an entry of the folder.
bool canBeAnEntry(std::string_view name) {
    return name != "." && name != ".." && !name.contains('/');
}

bool takeName(std::span<const std::byte> record, Fields& fields, std::string_view& name) {
    const std::size_t field = fields.position();
    Reference reference;
    if (!fields.take(reference))
        return false;
    const auto found = nameAt(record, field, reference);
    if (found && canBeAnEntry(*found))
        name = *found;
    return found.has_value();
}

std::optional<BulkRecord> recordIn(std::span<const std::byte> bytes) {
    Fields fields(bytes);
    std::uint32_t length = 0;
    AttributeSet has;
    if (!fields.take(length) || !fields.take(has) || !has.hasOnlyWhatWasAsked())
        return std::nullopt;
    BulkRecord record;
    if ((has.common & BulkBits::error) != 0 && !fields.take(record.error))
        return std::nullopt;
    if ((has.common & BulkBits::name) != 0 && !takeName(bytes, fields, record.name))
        return std::nullopt;
    std::optional<Timestamp> modified;
    if (!fields.takeIf((has.common & BulkBits::volume) != 0, record.volume) ||
        !fields.takeIf((has.common & BulkBits::objectType) != 0, record.objectType) ||
        !fields.takeIf((has.common & BulkBits::modified) != 0, modified) ||
        !fields.takeIf((has.common & BulkBits::number) != 0, record.number) ||
        !fields.takeIf((has.folder & BulkBits::mountStatus) != 0, record.mountStatus) ||
        !fields.takeIf((has.file & BulkBits::names) != 0, record.names) ||
        !fields.takeIf((has.file & BulkBits::totalAllocated) != 0, record.totalAllocated) ||
        !fields.takeIf((has.file & BulkBits::dataAllocated) != 0, record.dataAllocated))
        return std::nullopt;
    if (modified)
        record.modified = posix::fileTime(modified->seconds, modified->nanoseconds);
    return record;
}

}  // namespace

bool BulkRecord::isFolder() const {
    return objectType == folderType;
}

std::optional<BulkRecord> takeRecord(std::span<const std::byte> buffer, std::size_t& position) {
    std::uint32_t length = 0;
    if (position > buffer.size() || buffer.size() - position < sizeof length)
        return std::nullopt;
    std::memcpy(&length, buffer.data() + position, sizeof length);
    if (length > buffer.size() - position)
        return std::nullopt;
    auto record = recordIn(buffer.subspan(position, length));
    if (record)
        position += length;
    return record;
}

DirectoryEntry listedEntryOf(const BulkRecord& record) {
    DirectoryEntry entry{.name = record.name};
    if (record.objectType == linkType)
        entry.kind = EntryKind::link;
    else if (record.isFolder())
        entry.kind = EntryKind::directory;
    entry.isRegularFile = record.objectType == fileType;
    return entry;
}

std::optional<DirectoryEntry> entryOf(const BulkRecord& record) {
    if (record.name.empty() || record.error != 0 || !record.objectType)
        return std::nullopt;
    DirectoryEntry entry = listedEntryOf(record);
    if (entry.kind == EntryKind::link)
        return entry;
    entry.modified = record.modified;
    if (record.isFolder()) {
        const bool isVolume = (record.mountStatus.value_or(0) & mountPointOrTrigger) != 0;
        entry.kind = isVolume ? EntryKind::volume : EntryKind::directory;
        return entry;
    }
    const std::int64_t size = record.totalAllocated.value_or(record.dataAllocated.value_or(0));
    entry.allocatedSize = std::max<std::int64_t>(size, 0);
    const auto names = record.names.value_or(1);
    if (names > 1 && record.volume && record.number) {
        entry.names = names;
        entry.volume = *record.volume;
        entry.number = *record.number;
    }
    return entry;
}

int BulkListing::fill(const Read& read) {
    position_ = left_ = 0;
    for (;;) {
        const int count = read(buffer_);
        if (count > 0)
            left_ = static_cast<std::size_t>(count);
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

std::optional<DirectoryEntry> BulkListing::nextEntry(const Read& read, const NameSet* excluded,
                                                     std::error_code& error) {
    while (!error) {
        if (left_ == 0) {
            const int count = fill(read);
            // A dataless folder, whose names are not fetched for this, holds nothing on this disk.
            if (count < 0 && errno != EDEADLK)
                error = {errno, std::generic_category()};
            if (count <= 0)
                return std::nullopt;
        }
        const auto record = takeRecord(buffer_, position_);
        if (!record) {
            error = std::make_error_code(std::errc::io_error);
            left_ = 0;
            return std::nullopt;
        }
        --left_;
        auto entry = entryOf(*record);
        const bool isPassedOver =
            record->isFolder() && excluded != nullptr && entry && excluded->contains(entry->name);
        if (entry && !isPassedOver)
            return entry;
    }
    return std::nullopt;
}

int BulkListing::readNames(const Read& read) {
    const int count = fill(read);
    if (count <= 0)
        return count;
    std::size_t position = 0;
    for (std::size_t left = left_; left > 0; --left) {
        const auto record = takeRecord(buffer_, position);
        if (!record || record->name.empty()) {
            left_ = 0;
            errno = EIO;
            return -1;
        }
    }
    return 1;
}

std::optional<BulkRecord> BulkListing::nextName() {
    if (left_ == 0)
        return std::nullopt;
    --left_;
    return takeRecord(buffer_, position_);
}

}  // namespace ulvak::platform

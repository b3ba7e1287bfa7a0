#include "platform/macos/bulk_listing.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "platform/macos/bulk_buffer.h"

// Hand-built buffers in the system's format: the parser runs wherever the tests do.

namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;

/// The only record in a buffer.
std::optional<BulkRecord> only(const Bytes& bytes) {
    std::size_t position = 0;
    return takeRecord(bytes, position);
}

/// In an allocation of exactly this size, so that the sanitizers detect reads past the end.
Bytes exactly(std::span<const std::byte> bytes) {
    return {bytes.begin(), bytes.end()};
}

/// The same record in a buffer that ends with it, with its length set accordingly.
Bytes ofLength(const Bytes& record, std::uint32_t length) {
    Bytes bytes = exactly(std::span(record).first(length));
    if (length >= sizeof length)
        put(bytes, 0, length);
    return bytes;
}

const Written wholeFile{.name = "dosya.txt",
                        .error = 0,
                        .volume = 0x0100'0004,
                        .type = fileType,
                        .modified = {{1'000'000'000, 123'456'789}},
                        .number = 0x1'0000'0007,
                        .names = 3,
                        .totalAllocated = 12'288,
                        .dataAllocated = 8'192};

TEST(BulkRecord, HasEveryFieldOfAFile) {
    const Bytes bytes = record(wholeFile);
    const auto found = only(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "dosya.txt");
    EXPECT_EQ(found->name.data()[found->name.size()], '\0') << "others take it as a C string";
    EXPECT_EQ(found->objectType, fileType);
    EXPECT_EQ(found->modified, FileTime(1'000'000'000s + 123'456us));
    EXPECT_EQ(found->volume, 0x0100'0004U);
    EXPECT_EQ(found->number, 0x1'0000'0007U);
    EXPECT_EQ(found->names, 3U);
    EXPECT_EQ(found->mountStatus, std::nullopt);
    EXPECT_EQ(found->totalAllocated, 12'288);
    EXPECT_EQ(found->dataAllocated, 8'192);
}

TEST(BulkRecord, FieldsThatTheSystemLeftOutAreAbsentAndMoveTheOthersUp) {
    for (unsigned absent = 0; absent < 256; ++absent) {
        Written what = wholeFile;
        if ((absent & 1U) != 0)
            what.error.reset();
        if ((absent & 2U) != 0)
            what.type.reset();
        if ((absent & 4U) != 0)
            what.modified.reset();
        if ((absent & 8U) != 0)
            what.totalAllocated.reset();
        if ((absent & 16U) != 0)
            what.dataAllocated.reset();
        if ((absent & 32U) != 0)
            what.volume.reset();
        if ((absent & 64U) != 0)
            what.number.reset();
        if ((absent & 128U) != 0)
            what.names.reset();
        const Bytes bytes = record(what);
        const auto found = only(bytes);
        ASSERT_TRUE(found) << absent;
        EXPECT_EQ(found->name, "dosya.txt") << absent;
        EXPECT_EQ(found->objectType, what.type) << absent;
        EXPECT_EQ(found->modified.has_value(), what.modified.has_value()) << absent;
        EXPECT_EQ(found->totalAllocated, what.totalAllocated) << absent;
        EXPECT_EQ(found->dataAllocated, what.dataAllocated) << absent;
        EXPECT_EQ(found->volume, what.volume) << absent;
        EXPECT_EQ(found->number, what.number) << absent;
        EXPECT_EQ(found->names, what.names) << absent;
    }
}

TEST(BulkRecord, HasEveryFieldInTheOrderOfItsGroupAndBit) {
    // More fields than any one entry has: the group for folders precedes the one for files.
    Written what = wholeFile;
    what.mountStatus = trigger;
    const Bytes bytes = record(what);
    const auto found = only(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "dosya.txt");
    EXPECT_EQ(found->objectType, fileType);
    EXPECT_EQ(found->modified, FileTime(1'000'000'000s + 123'456us));
    EXPECT_EQ(found->number, 0x1'0000'0007U);
    EXPECT_EQ(found->mountStatus, trigger);
    EXPECT_EQ(found->names, 3U);
    EXPECT_EQ(found->totalAllocated, 12'288);
    EXPECT_EQ(found->dataAllocated, 8'192);
}

TEST(BulkRecord, WithoutANameHasItsOtherFields) {
    Written what = wholeFile;
    what.name.reset();
    const Bytes bytes = record(what);
    const auto found = only(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "");
    EXPECT_EQ(found->objectType, fileType);
    EXPECT_EQ(found->totalAllocated, 12'288);
    EXPECT_EQ(found->dataAllocated, 8'192);
    EXPECT_FALSE(entryOf(*found));
}

TEST(BulkRecord, IsReadAtAnyAddress) {
    const Bytes bytes = record(wholeFile);
    for (std::size_t shift = 0; shift < 16; ++shift) {
        Bytes shifted(shift);
        shifted.insert(shifted.end(), bytes.begin(), bytes.end());
        std::size_t position = shift;
        const auto found = takeRecord(shifted, position);
        ASSERT_TRUE(found) << shift;
        EXPECT_EQ(found->name, "dosya.txt");
        EXPECT_EQ(found->totalAllocated, 12'288);
        EXPECT_EQ(position, shifted.size());
    }
}

TEST(BulkRecord, ThatIsCutAnywhereIsNone) {
    const Bytes whole = record(wholeFile);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(only(cut)) << size << ": its length says more than there is";
    }
    // A length too short for the fields the record claims to have.
    for (std::uint32_t length = 0; length < whole.size() - 7; ++length) {
        Bytes shortened = whole;
        put(shortened, 0, length);
        EXPECT_FALSE(only(shortened)) << length;
    }
}

TEST(BulkRecord, MayEndWithItsLastFieldAndNotBefore) {
    const Written fields[] = {
        {},
        {.error = 0},
        {.type = fileType},
        {.error = 0, .type = folderType, .modified = {{1, 2}}, .mountStatus = 0},
        {.type = fileType, .totalAllocated = 1},
        {.type = fileType, .totalAllocated = 1, .dataAllocated = 1},
    };
    for (const Written& what : fields) {
        const std::uint32_t size = static_cast<std::uint32_t>(fieldsOffset) + (what.error ? 4 : 0) +
                                   (what.type ? 4 : 0) + (what.modified ? 16 : 0) +
                                   (what.mountStatus ? 4 : 0) + (what.totalAllocated ? 8 : 0) +
                                   (what.dataAllocated ? 8 : 0);
        const Bytes whole = record(what);
        EXPECT_TRUE(only(ofLength(whole, size))) << size;
        for (std::uint32_t length = 0; length < size; ++length)
            EXPECT_FALSE(only(ofLength(whole, length))) << length << " of " << size;
    }
    // The two halves of a name's reference are a field like any other.
    const Bytes named = record({.name = ""});
    for (std::uint32_t length = 0; length < fieldsOffset + 8; ++length)
        EXPECT_FALSE(only(ofLength(named, length))) << length;
}

TEST(BulkRecord, PositionStaysWhereNothingCanBeUnderstood) {
    Bytes bytes = record(wholeFile);
    put(bytes, setOffset, std::uint32_t{0x10});
    std::size_t position = 0;
    EXPECT_FALSE(takeRecord(bytes, position)) << "with a field that nobody asked for";
    EXPECT_EQ(position, 0U);
    put(bytes, 0, std::numeric_limits<std::uint32_t>::max());
    EXPECT_FALSE(takeRecord(bytes, position));
    EXPECT_EQ(position, 0U);
    position = bytes.size();
    EXPECT_FALSE(takeRecord(bytes, position)) << "nothing is left";
    position = bytes.size() + 1;
    EXPECT_FALSE(takeRecord(bytes, position));
}

TEST(BulkRecord, BehindAnotherEndsWithTheBufferToo) {
    const Bytes first = record({.name = "first", .type = fileType});
    const Bytes second = record({.type = fileType, .totalAllocated = 1});
    Bytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    for (std::size_t size = first.size(); size <= both.size(); ++size) {
        const Bytes cut = exactly(std::span(both).first(size));
        std::size_t position = 0;
        ASSERT_TRUE(takeRecord(cut, position));
        EXPECT_EQ(takeRecord(cut, position).has_value(), size == both.size()) << size;
    }
    // A length counts from its record's start; this one is a byte too long.
    put(both, first.size(), static_cast<std::uint32_t>(second.size() + 1));
    const Bytes longer = exactly(both);
    std::size_t position = first.size();
    EXPECT_FALSE(takeRecord(longer, position));
}

TEST(BulkRecord, OfAnyLengthIsFollowedByTheNext) {
    for (std::uint32_t more = 0; more < 16; ++more) {
        Bytes bytes = record({.name = "first", .type = fileType});
        bytes.resize(bytes.size() + more);
        put(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
        const Bytes second = record({.name = "second", .type = fileType});
        bytes.insert(bytes.end(), second.begin(), second.end());
        std::size_t position = 0;
        ASSERT_TRUE(takeRecord(bytes, position));
        const auto found = takeRecord(bytes, position);
        ASSERT_TRUE(found) << more;
        EXPECT_EQ(found->name, "second");
        EXPECT_EQ(position, bytes.size());
    }
}

TEST(BulkRecord, WithFieldsThatNobodyAskedForIsNone) {
    for (std::size_t group = 0; group < 5; ++group) {
        for (unsigned bit = 0; bit < 32; ++bit) {
            Bytes bytes = record(wholeFile);
            std::uint32_t attributes = 0;
            std::memcpy(&attributes, bytes.data() + setOffset + group * 4, 4);
            const std::uint32_t known = group == 0   ? BulkBits::common
                                        : group == 2 ? BulkBits::folder
                                        : group == 3 ? BulkBits::file
                                                     : 0U;
            if ((known & (1U << bit)) != 0)
                continue;
            put(bytes, setOffset + group * 4, attributes | (1U << bit));
            EXPECT_FALSE(only(bytes)) << group << " " << bit;
        }
    }
}

TEST(BulkRecord, ANameNeverLeadsOutOfItsRecord) {
    Written what = wholeFile;
    what.error.reset();
    const Bytes whole = record(what);
    const auto with = [&](std::int32_t offset, std::uint32_t length) {
        Bytes bytes = whole;
        put(bytes, fieldsOffset, offset);
        put(bytes, fieldsOffset + 4, length);
        return only(bytes);
    };
    const auto size = static_cast<std::int32_t>(whole.size());
    for (const std::int32_t offset : {std::numeric_limits<std::int32_t>::min(), -1000, size, size + 1,
                                      std::numeric_limits<std::int32_t>::max()})
        EXPECT_FALSE(with(offset, 4)) << offset;
    for (const std::uint32_t length : {0U, 1U, 4U}) {
        for (std::int32_t begin = size; begin < size + 4; ++begin)
            EXPECT_FALSE(with(begin - static_cast<std::int32_t>(fieldsOffset), length)) << begin;
        EXPECT_FALSE(with(-static_cast<std::int32_t>(fieldsOffset) - 1, length));
    }
    EXPECT_FALSE(with(0, static_cast<std::uint32_t>(size)));
    EXPECT_FALSE(with(0, std::numeric_limits<std::uint32_t>::max()));
    EXPECT_FALSE(with(size - static_cast<std::int32_t>(fieldsOffset), 0)) << "without its zero byte";
    EXPECT_FALSE(with(64, 3)) << "cut before its zero byte";
}

TEST(BulkRecord, ANameHasItsZeroByteInItsRecord) {
    // A name that fills the record, with its null byte just behind it.
    Bytes bytes = record({.name = "name", .type = fileType});
    const std::size_t begin = fieldsOffset + 8 + 4;
    for (std::size_t at = begin; at < bytes.size(); ++at)
        bytes[at] = std::byte{'x'};
    const auto length = static_cast<std::uint32_t>(bytes.size() - begin);
    append(bytes, std::uint64_t{0});
    for (const std::uint32_t more : {0U, 1U, 8U}) {
        put(bytes, fieldsOffset + 4, length + more);
        EXPECT_FALSE(only(bytes)) << more;
    }
    bytes[begin + length - 1] = std::byte{0};
    put(bytes, fieldsOffset + 4, length);
    EXPECT_EQ(only(bytes)->name, std::string(length - 1, 'x'));
}

TEST(BulkRecord, ANameEndsAtItsFirstZeroByte) {
    Bytes bytes = record({.name = "name", .type = fileType});
    put(bytes, fieldsOffset + 4, std::uint32_t{7});  // up to the next boundary
    EXPECT_EQ(only(bytes)->name, "name");
}

TEST(BulkRecord, ANameMayLieInFrontOfWhereItIsNamed) {
    Bytes bytes = record({.name = "behind", .error = 0});
    put(bytes, fieldsOffset, std::uint32_t{'a'});
    put(bytes, fieldsOffset + 4, std::int32_t{-4});
    put(bytes, fieldsOffset + 8, std::uint32_t{2});
    EXPECT_EQ(only(bytes)->name, "a");
}

TEST(BulkRecord, ANameThatNoEntryCanHaveIsLeftOut) {
    for (const std::string name : {"", ".", "..", "a/b", "/", "../a"}) {
        Written what = wholeFile;
        what.name = name;
        const Bytes bytes = record(what);
        const auto found = only(bytes);
        ASSERT_TRUE(found) << name;
        EXPECT_TRUE(found->name.empty()) << name;
        EXPECT_FALSE(entryOf(*found)) << name;
    }
    for (const std::string& name : {std::string("..."), std::string("çğıöşü"), std::string(765, 'x')}) {
        Written what = wholeFile;
        what.name = name;
        const Bytes bytes = record(what);
        EXPECT_EQ(only(bytes)->name, name);
    }
}

TEST(BulkEntry, AnEntryWithAnErrorIsPassedOver) {
    const Bytes bytes = record({.name = "a", .error = 13});
    const auto found = only(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->error, 13U);
    EXPECT_EQ(found->name, "a");
    EXPECT_FALSE(entryOf(*found));
    EXPECT_FALSE(entryOf(*only(record({.name = "a", .error = 13, .type = fileType}))));
    EXPECT_FALSE(entryOf(*only(record({.name = "a", .error = 0})))) << "of what kind nobody knows";
}

TEST(BulkEntry, TellsTheKinds) {
    const auto kindOf = [](const Written& what) {
        const Bytes bytes = record(what);
        return entryOf(*only(bytes))->kind;
    };
    EXPECT_EQ(kindOf({.name = "a", .type = fileType}), EntryKind::file);
    for (const std::uint32_t type : {blockDeviceType, deviceType, socketType, fifoType})
        EXPECT_EQ(kindOf({.name = "a", .type = type}), EntryKind::file) << type;
    EXPECT_EQ(kindOf({.name = "a", .type = linkType}), EntryKind::link);
    EXPECT_EQ(kindOf({.name = "a", .type = folderType}), EntryKind::directory);
    EXPECT_EQ(kindOf({.name = "a", .type = folderType, .mountStatus = 0}), EntryKind::directory);
    EXPECT_EQ(kindOf({.name = "a", .type = folderType, .mountStatus = mountPoint}), EntryKind::volume);
    EXPECT_EQ(kindOf({.name = "a", .type = folderType, .mountStatus = trigger}), EntryKind::volume)
        << "it would be mounted by whoever looks";
    EXPECT_EQ(kindOf({.name = "a", .type = folderType, .mountStatus = 4}), EntryKind::directory)
        << "whatever else a later system may say of it";
}

TEST(BulkEntry, ThatIsOnlyListedHasItsKindAsFarAsThatIsSaid) {
    const auto listed = [](const Written& what) {
        const Bytes bytes = record(what);
        const DirectoryEntry entry = listedEntryOf(*only(bytes));
        EXPECT_EQ(entry.name, "a");
        return std::pair(entry.kind, entry.isRegularFile);
    };
    EXPECT_EQ(listed({.name = "a", .type = fileType}), std::pair(EntryKind::file, true));
    for (const std::uint32_t type : {blockDeviceType, deviceType, socketType, fifoType})
        EXPECT_EQ(listed({.name = "a", .type = type}), std::pair(EntryKind::file, false)) << type;
    EXPECT_EQ(listed({.name = "a", .type = linkType}), std::pair(EntryKind::link, false));
    EXPECT_EQ(listed({.name = "a", .type = folderType}), std::pair(EntryKind::directory, false));
    EXPECT_EQ(listed({.name = "a"}), std::pair(EntryKind::file, false)) << "for certain neither";
}

TEST(BulkEntry, AFolderHasADateAndNoSize) {
    const Bytes bytes = record({.name = "a",
                                .error = 0,
                                .type = folderType,
                                .modified = {{1, 2'000}},
                                .mountStatus = 0,
                                .totalAllocated = 4'096});
    const auto entry = entryOf(*only(bytes));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->kind, EntryKind::directory);
    EXPECT_EQ(entry->modified, FileTime(1s + 2us));
    EXPECT_EQ(entry->allocatedSize, 0);
}

TEST(BulkEntry, ALinkHasNoDate) {
    const Bytes bytes = record({.name = "a", .type = linkType, .modified = {{1, 0}}});
    EXPECT_EQ(entryOf(*only(bytes))->modified, std::nullopt);
}

TEST(BulkEntry, CountsAllForksOfAFileElseItsDataElseNothing) {
    const auto sizeOf = [](const Written& what) {
        const Bytes bytes = record(what);
        return entryOf(*only(bytes))->allocatedSize;
    };
    EXPECT_EQ(sizeOf(wholeFile), 12'288);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .dataAllocated = 4'096}), 4'096);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType}), 0);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = 4'096, .dataAllocated = 8'192}),
              4'096);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = 0, .dataAllocated = 8'192}), 0);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = 5'000'000'000}), 5'000'000'000);
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = most}), most);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = -most - 1}), 0);
    EXPECT_EQ(sizeOf({.name = "a", .type = fileType, .totalAllocated = -1}), 0);
    EXPECT_EQ(sizeOf({.name = "a", .type = linkType, .totalAllocated = 4'096}), 0) << "links hold nothing";
}

TEST(BulkEntry, KnowsAFileByItsNumberWhereItHasSeveralNames) {
    const auto entry = [](const Written& what) {
        const Bytes bytes = record(what);
        return *entryOf(*only(bytes));
    };
    EXPECT_EQ(entry(wholeFile).names, 3U);
    EXPECT_EQ(entry(wholeFile).volume, 0x0100'0004U);
    EXPECT_EQ(entry(wholeFile).number, 0x1'0000'0007U);
    Written what = wholeFile;
    what.names = 1;
    EXPECT_EQ(entry(what).names, 1U);
    EXPECT_EQ(entry(what).number, 0U) << "nobody asks";
    for (auto absent : {&Written::volume, &Written::names}) {
        what = wholeFile;
        what.*absent = std::nullopt;
        EXPECT_EQ(entry(what).names, 1U) << "what cannot be told apart is a file of its own";
    }
    what = wholeFile;
    what.number.reset();
    EXPECT_EQ(entry(what).names, 1U);
    what = wholeFile;
    what.type = folderType;
    EXPECT_EQ(entry(what).names, 1U) << "a folder's names are its own and those of the folders in it";
}

TEST(BulkEntry, HoldsDatesBeyondTheRangeAtItsEnds) {
    const auto dateOf = [](std::int64_t seconds) {
        const Bytes bytes = record({.name = "a", .type = fileType, .modified = {{seconds, 0}}});
        return entryOf(*only(bytes))->modified;
    };
    EXPECT_EQ(dateOf(std::numeric_limits<std::int64_t>::max()), FileTime::max());
    EXPECT_EQ(dateOf(std::numeric_limits<std::int64_t>::min()), FileTime::min());
    EXPECT_EQ(dateOf(-1), FileTime(-1s));
}

TEST(BulkRecords, FollowOneAnotherThroughSeveralBatchesInOneBuffer) {
    // The system reuses the buffer; remains of an earlier batch behind the end are never read.
    const std::vector<std::vector<std::string>> batches = {
        {"first of the longest batch", "b", "c with another name"}, {"d"}, {}, {"e", "f"}};
    Bytes buffer(4096, std::byte{0xFF});
    std::vector<std::string> seen;
    for (const auto& batch : batches) {
        std::size_t end = 0;
        for (const std::string& name : batch) {
            const Bytes bytes = record({.name = name, .type = fileType});
            std::memcpy(buffer.data() + end, bytes.data(), bytes.size());
            end += bytes.size();
        }
        std::size_t position = 0;
        for (std::size_t left = batch.size(); left > 0; --left) {
            const auto found = takeRecord(buffer, position);
            ASSERT_TRUE(found);
            seen.emplace_back(found->name);
        }
        EXPECT_EQ(position, end);
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"first of the longest batch", "b", "c with another name", "d",
                                              "e", "f"}));
}

}  // namespace
}  // namespace ulvak::platform

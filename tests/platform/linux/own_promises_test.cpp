#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/directory.h"
#include "platform/durable_file.h"
#include "platform/files.h"
#include "platform/removal.h"
#include "platform/volume.h"
#include "support/temp_tree.h"

// What Linux guarantees beyond the common contract. Names are any bytes except two; a listing's details are
// looked up when requested, so entries that are gone are not reported.

namespace ulvak::platform {
namespace {

using test::file;
using test::folder;
using test::TempTree;
using test::textFile;
using test::TreeEntry;

/// Every entry's kind and bytes on disk.
std::map<std::string, std::pair<EntryKind, std::int64_t>> kinds(const std::string& path) {
    std::map<std::string, std::pair<EntryKind, std::int64_t>> seen;
    const auto directory = Directory::open(path);
    EXPECT_TRUE(directory);
    EntryReader reader;
    reader.start(*directory);
    while (const DirectoryEntry* entry = reader.next())
        EXPECT_TRUE(seen.try_emplace(std::string(entry->name), entry->kind, entry->allocatedSize).second);
    EXPECT_FALSE(reader.error());
    return seen;
}

TEST(EntryReader, ADeviceHoldsNothingAndIsNotOpened) {
    const TempTree tree;
    if (::mknod(tree.path("tape").c_str(), S_IFCHR | 0666, makedev(9, 0)) != 0)
        GTEST_SKIP() << "this user cannot make devices";
    const auto seen = kinds(tree.path());
    EXPECT_EQ(seen.at("tape"), (std::pair(EntryKind::file, std::int64_t{0})));
}

TEST(EntryReader, ReadsNamesOfEveryByte) {
    TempTree tree;
    std::set<std::string> expected = {std::string(255, '\xfe'), "...", "-", "\xc3", "\xed\xa0\x80"};
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/' && byte != '.')
            expected.insert(std::string(1, static_cast<char>(byte)));
    }
    for (const std::string& name : expected)
        tree.add({folder(name)});
    std::set<std::string> seen;
    for (const auto& [name, what] : kinds(tree.path()))
        seen.insert(name);
    EXPECT_EQ(seen, expected);
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    for (const std::string& name : expected)
        EXPECT_TRUE(top->openBelow(name.c_str())) << name;
}

TEST(EntryReader, PassesOverEntriesThatVanishedAfterTheyWereListed) {
    TempTree tree;
    for (int i = 0; i < 100; ++i)
        tree.add({file(std::to_string(i))});
    const auto directory = Directory::open(tree.path());
    ASSERT_TRUE(directory);
    EntryReader reader;
    reader.start(*directory);
    ASSERT_NE(reader.next(), nullptr);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(::unlink(tree.path(std::to_string(i)).c_str()), 0);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_FALSE(reader.error());
}

TEST(EntryReader, SaysThatAListingEndedEarly) {
    const TempTree tree({folder("gone")});
    const auto directory = Directory::open(tree.path("gone"));
    ASSERT_TRUE(directory);
    ASSERT_EQ(::rmdir(tree.path("gone").c_str()), 0);
    EntryReader reader;
    reader.start(*directory);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_TRUE(reader.error());
}

TEST(EntryReader, HasDatesBeyond2262) {
    const FileTime farFuture = std::chrono::sys_days{std::chrono::year{2400} / 1 / 1};
    const TempTree tree({file("new").modifiedAt(farFuture)});
    EXPECT_EQ(fileInfo(tree.path("new"))->modified, farFuture);
}

TEST(Directory, ASocketIsNoFolder) {
    const TempTree tree({test::socket("socket")});
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    EXPECT_EQ(top->openBelow("socket").error(), std::errc::not_a_directory);
}

TEST(Files, AFileWithASlashAfterItIsNone) {
    const TempTree tree({file("file")});
    EXPECT_FALSE(existsIn(tree.path(), "file/"));
    EXPECT_FALSE(resolvedPath(tree.path("file/")));
}

TEST(ReplaceFile, TakesNamesThatAreNoText) {
    const TempTree tree;
    EXPECT_FALSE(replaceFile(tree.path("\xff file"), "bytes"));
    EXPECT_EQ(readFile(tree.path("\xff file"), 100), "bytes");
}

TEST(ExistsIn, FindsNamesThatAreNoTextAndTellsCapitals) {
    const TempTree tree({file("\xff\n"), file("file")});
    EXPECT_TRUE(existsIn(tree.path(), "\xff\n"));
    EXPECT_FALSE(existsIn(tree.path(), "FILE"));
    EXPECT_THAT(listNames(tree.path()), testing::UnorderedElementsAre("\xff\n", "file"));
}

TEST(Removal, NamesAreBytes) {
    std::vector<TreeEntry> entries;
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (c == '/')
            continue;
        if (c != '.')
            entries.push_back(folder(std::string(1, c), {textFile(std::string(1, c), "x")}));
        entries.push_back(textFile(std::string(255, c), "x"));
    }
    const TempTree tree({folder("item", entries)});
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    EXPECT_TRUE(removeEntry(*top, "item"));
    EXPECT_FALSE(entryNumber(*top, "item"));
}

TEST(Volume, AvailableIsWhatThisUserCanWriteNotWhatIsKeptForRoot) {
    struct statvfs info{};
    ASSERT_EQ(::statvfs("/", &info), 0);
    const auto reserve =
        static_cast<double>(info.f_bfree - info.f_bavail) * static_cast<double>(info.f_frsize);
    if (reserve < 3e9)
        GTEST_SKIP() << "next to nothing is kept for root here";
    const auto capacity = volumeCapacity("/");
    ASSERT_TRUE(capacity);
    struct statvfs after{};
    ASSERT_EQ(::statvfs("/", &after), 0);
    const auto [least, most] = std::minmax(info.f_bavail, after.f_bavail);
    const auto available = static_cast<double>(capacity->available);
    constexpr double ofOthers = 1e9;  // tolerance for concurrent writes by others
    EXPECT_GE(available, static_cast<double>(least) * static_cast<double>(info.f_frsize) - ofOthers);
    EXPECT_LE(available, static_cast<double>(most) * static_cast<double>(info.f_frsize) + ofOthers);
}

}  // namespace
}  // namespace ulvak::platform

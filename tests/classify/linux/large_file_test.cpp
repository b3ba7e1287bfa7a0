#include "classify/large_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "support/temp_tree.h"

namespace ulvak {
namespace {

using namespace std::string_literals;
using test::folder;
using test::TempTree;
using test::textFile;

LargeFile kindOf(const std::string& name, const std::string& begin) {
    const TempTree tree({textFile(name, begin)});
    return largeFile(tree.path(name));
}

TEST(LargeFiles, DisksOfVirtualMachinesAreKnownByNameAndBeginning) {
    EXPECT_EQ(kindOf("a.qcow2", "QFI\xfb\0\0\0\x03"s), LargeFile::machineDisk);
    EXPECT_EQ(kindOf("A.VMDK", "KDMV"s), LargeFile::machineDisk);
    EXPECT_EQ(kindOf("a.vhdx", "vhdxfile"s), LargeFile::machineDisk);
    EXPECT_EQ(kindOf("a.vdi", std::string(64, ' ') + "\x7f\x10\xda\xbe"), LargeFile::machineDisk);
    EXPECT_EQ(kindOf("a.vdi", "\x7f\x10\xda\xbe"), LargeFile::other) << "elsewhere";
    EXPECT_EQ(kindOf("a.qcow2", "metin"), LargeFile::other);
    EXPECT_EQ(kindOf("a.txt", "QFI\xfb"), LargeFile::other);
}

std::string elf(char order, const std::string& kind) {
    return "\x7f"s + "ELF\x02" + order + std::string(10, '\0') + kind;
}

TEST(LargeFiles, ACoreDumpIsAnElfFileOfItsKind) {
    EXPECT_EQ(kindOf("core", elf(1, "\4\0"s)), LargeFile::coreDump);
    EXPECT_EQ(kindOf("core.4711", elf(2, "\0\4"s)), LargeFile::coreDump);
    EXPECT_EQ(kindOf("oyun.core", elf(1, "\4\0"s)), LargeFile::coreDump);
    EXPECT_EQ(kindOf("core", elf(1, "\2\0"s)), LargeFile::other) << "a program";
    EXPECT_EQ(kindOf("core", elf(1, "\0\4"s)), LargeFile::other) << "the other byte order";
    EXPECT_EQ(kindOf("core", "\x7f"s + "ELF"), LargeFile::other) << "cut off";
    EXPECT_EQ(kindOf("java_pid12.hprof", "JAVA PROFILE 1.0.2"), LargeFile::coreDump);
}

TEST(LargeFiles, InstallersAreKnownByNameAndBeginning) {
    EXPECT_EQ(kindOf("a.iso", std::string(32769, '\0') + "CD001"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.iso", std::string(40000, '\0')), LargeFile::other);
    EXPECT_EQ(kindOf("a.deb", "!<arch>\ndebian-binary"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.rpm", "\xed\xab\xee\xdb"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.AppImage", "\x7f"s + "ELF"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.exe", "MZ"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.run", "#!/bin/sh"), LargeFile::installer);
    EXPECT_EQ(kindOf("a.run", "veri"), LargeFile::other);
}

TEST(LargeFiles, WhatCannotBeReadIsNothingSpecial) {
    const TempTree tree({folder("core"), test::fifo("a.iso"), test::link("a.qcow2", "/etc/passwd")});
    for (const char* name : {"core", "a.iso", "a.qcow2", "missing.vdi"})
        EXPECT_EQ(largeFile(tree.path(name)), LargeFile::other) << name;
}

TEST(LargeFiles, DownloadsAreWhereTheDesktopHasThem) {
    TempTree tree({folder("ev", {folder(".config", {textFile("user-dirs.dirs",
                                                             "# Ayarlar\nXDG_DESKTOP_DIR=\"$HOME/Masaüstü\"\n"
                                                             "XDG_DOWNLOAD_DIR=\"$HOME/İndirilenler\"\n")})}),
                   folder("ayar", {textFile("user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/\"\n")})});
    UserFolders folders{.home = tree.path("ev"), .temp = "/tmp", .cache = "", .trash = ""};
    EXPECT_EQ(downloadFolder(folders), tree.path("ev/İndirilenler"));
    folders.userConfig = tree.path("ayar");
    EXPECT_EQ(downloadFolder(folders), "") << "the home folder itself";
    folders.userConfig = tree.path("yok");
    EXPECT_EQ(downloadFolder(folders), tree.path("ev/Downloads"));
}

}  // namespace
}  // namespace ulvak

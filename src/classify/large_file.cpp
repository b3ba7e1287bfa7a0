#include "classify/large_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "core/text.h"
#include "platform/directory.h"
#include "platform/files.h"
#include "platform/volume.h"

namespace ulvak {
namespace {

using namespace std::string_view_literals;

/// A disc image has its mark after sixteen empty sectors of 2 KB and a byte.
constexpr std::size_t discMarkAt = 32769;
constexpr std::string_view discMark = "CD001";

std::string beginning(const std::string& path, std::size_t count) {
    const auto folder = platform::Directory::open(std::string(Paths::parent(path)));
    return folder ? platform::fileBeginning(*folder, std::string(Paths::lastComponent(path)), count)
                  : std::string();
}

bool isOneOf(std::string_view extension, std::initializer_list<std::string_view> extensions) {
    return std::ranges::find(extensions, extension) != extensions.end();
}

bool isMachineDisk(std::string_view begin) {
    constexpr std::size_t virtualBoxMarkAt = 64;
    return begin.starts_with("QFI\xfb") || begin.starts_with("KDMV") || begin.starts_with("COWD") ||
           begin.starts_with("vhdxfile") || begin.starts_with("# Disk DescriptorFile") ||
           begin.substr(std::min(virtualBoxMarkAt, begin.size())).starts_with("\x7f\x10\xda\xbe");
}

/// ELF files say what they are in two bytes at 16, in the order that the byte at 5 tells; 4 is a core dump.
bool isCoreDump(std::string_view begin) {
    if (begin.starts_with("JAVA PROFILE"))
        return true;
    constexpr std::size_t kindAt = 16;
    if (!begin.starts_with("\x7f"
                           "ELF") ||
        begin.size() < kindAt + 2)
        return false;
    const bool isLittleEndian = begin[5] == 1;
    return begin.substr(kindAt, 2) == (isLittleEndian ? "\4\0"sv : "\0\4"sv);
}

bool isInstaller(std::string_view extension, std::string_view begin) {
    if (extension == "iso" || extension == "img")
        return begin.substr(std::min(discMarkAt, begin.size())).starts_with(discMark);
    if (extension == "deb")
        return begin.starts_with("!<arch>\ndebian");
    if (extension == "rpm")
        return begin.starts_with("\xed\xab\xee\xdb");
    if (extension == "appimage")
        return begin.starts_with(
            "\x7f"
            "ELF");
    if (extension == "exe")
        return begin.starts_with("MZ");
    if (extension == "msi")
        return begin.starts_with("\xd0\xcf\x11\xe0");
    return isOneOf(extension, {"run", "bundle"}) && begin.starts_with("#!");
}

}  // namespace

LargeFile nameOfLargeFile(std::string_view name) {
    const std::string extension = lowerCased(Paths::extension(name));
    if (isOneOf(extension, {"qcow2", "qcow", "vdi", "vmdk", "vhdx"}))
        return LargeFile::machineDisk;
    if (isOneOf(extension, {"iso", "img", "deb", "rpm", "appimage", "exe", "msi", "run", "bundle"}))
        return LargeFile::installer;
    const bool isDump = name.starts_with("core") || isOneOf(extension, {"core", "dump", "hprof"});
    return isDump ? LargeFile::coreDump : LargeFile::other;
}

LargeFile largeFile(const std::string& path) {
    constexpr std::size_t usual = 512;
    const std::string_view name = Paths::lastComponent(path);
    const LargeFile kind = nameOfLargeFile(name);
    bool isSo = false;
    if (kind == LargeFile::machineDisk)
        isSo = isMachineDisk(beginning(path, usual));
    else if (kind == LargeFile::installer)
        isSo = isInstaller(lowerCased(Paths::extension(name)), beginning(path, discMarkAt + discMark.size()));
    else if (kind == LargeFile::coreDump)
        isSo = isCoreDump(beginning(path, usual));
    return isSo ? kind : LargeFile::other;
}

std::string downloadFolder(const UserFolders& folders) {
    constexpr std::size_t most = 16UZ * 1024;
    const std::string config =
        folders.userConfig.empty() ? Paths::join(folders.home, ".config") : folders.userConfig;
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    const platform::Reach::Target file = reach.follow(Paths::join(config, "user-dirs.dirs"));
    const std::string settings = file.isThere ? beginning(file.path, most) : std::string();
    constexpr std::string_view setting = "\nXDG_DOWNLOAD_DIR=\"$HOME/";
    const std::string lines = "\n" + settings;
    const std::size_t at = lines.find(setting);
    if (at == std::string::npos)
        return Paths::join(folders.home, "Downloads");
    const std::string_view value = std::string_view(lines).substr(at + setting.size());
    const std::string_view name = value.substr(0, value.find_first_of("\"\n"));
    return name.empty() ? std::string() : Paths::join(folders.home, name);
}

}  // namespace ulvak

#pragma once

#include <chrono>
#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/file_descriptor.h"

/// Small files that a program keeps and must not lose. Everything blocks until the disk has answered. Paths
/// are bytes. Safe from any thread and for several programs at once, on one path too.
namespace ulvak::platform {

/// All bytes of a regular file; a link is followed. Anything else (nobody may write to a pipe for years) and
/// a file of more than `most` bytes fail without being read.
[[nodiscard]] std::expected<std::string, std::error_code> readFile(const std::string& path, std::size_t most);

/// Puts `bytes` where `path` leads to. Whatever happens meanwhile, a kill, a full disk, a power cut, there is
/// either what was there before or all of `bytes`; on success they are on the disk. Two programs that replace
/// one file at once never mix: the later one wins.
///
/// A symbolic link stays, and the file that it leads to is replaced or made: whoever put a link there, into a
/// folder that is synchronised, say, wants the contents in that place. What is there but no regular file is
/// left alone, and that is an error. A new file can be read and written by this user alone; one that is
/// replaced keeps its permissions, and loses other names of it (hard links).
///
/// The bytes are first written next to the file, in a hidden one. A program that is killed leaves that
/// behind; the next call for the same folder removes it.
[[nodiscard]] std::error_code replaceFile(const std::string& path, std::string_view bytes);

/// As `replaceFile`, for what could not be read or understood and may be worth a lot: what was there stays
/// beside the new file, under the first name that is free of its own with ".old", ".old.1", ".old.2" and so
/// on behind it. It is not read for that. Where it cannot be kept, nothing is replaced. The new file can be
/// read and written by this user alone, whatever the old one's permissions were.
[[nodiscard]] std::error_code replaceFileKeepingOld(const std::string& path, std::string_view bytes);

/// Whether an entry of this name is, or was, such a hidden file.
[[nodiscard]] bool isDraftName(std::string_view name);

/// Keeps other programs from changing the file at `path` between a look at it and its replacement, as long as
/// they take this lock too. It ends with the object, or with the process however that ends. Not for the UI
/// thread.
///
/// It is a lock on the file's folder, so that nothing is left lying beside the file; where a server locks
/// files only, on a hidden file there. Nobody's death or silence may cost a label: whoever cannot have the
/// lock, because nothing can be locked there or because somebody has held it for all of `patience`, goes on
/// without.
class FileLock {
public:
    FileLock(const std::string& path, std::chrono::milliseconds patience);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    [[nodiscard]] bool isHeld() const { return isHeld_; }

private:
    FileDescriptor descriptor_;
    bool isHeld_ = false;
};

/// Makes a folder, and those above it that are missing, for this user alone. No error when it is there.
[[nodiscard]] std::error_code makeFolders(const std::string& path);

}  // namespace ulvak::platform

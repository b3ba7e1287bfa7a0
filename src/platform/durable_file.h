#pragma once

#include <chrono>
#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/file_descriptor.h"

/// Small files that must not be lost. All calls block on the disk. Paths are bytes. Thread-safe, and safe for
/// several programs at once, even on the same path.
namespace ulvak::platform {

/// Reads a whole regular file, following a link. Anything else (a pipe might never have a writer) and files
/// larger than `most` bytes fail without being read.
[[nodiscard]] std::expected<std::string, std::error_code> readFile(const std::string& path, std::size_t most);

/// Atomically replaces the file that `path` leads to. Whatever happens, be it a kill, a full disk or a power
/// cut, either the old content or all of `bytes` is there; on success `bytes` are on the disk. Concurrent
/// calls for one file never mix: the later one wins.
///
/// A symbolic link stays, and its target is replaced or created: if somebody put a link there, to a
/// synchronised folder for instance, that is where the content belongs. An existing entry that is not a
/// regular file is left alone, which is an error. A new file is readable and writable by this user only; a
/// replaced one keeps its permissions but loses its other hard links.
///
/// The bytes are first written to a hidden file in the same folder. A program that is killed leaves it
/// behind; the next call for that folder removes it.
[[nodiscard]] std::error_code replaceFile(const std::string& path, std::string_view bytes);

/// Like `replaceFile`, for files that could not be read or understood and may be valuable: the old file is
/// kept beside the new one, under the first free name of the form NAME.old, NAME.old.1, NAME.old.2 and so on.
/// It need not be readable. If it cannot be kept, nothing is replaced. The new file is readable and writable
/// by this user only, whatever the old permissions were.
[[nodiscard]] std::error_code replaceFileKeepingOld(const std::string& path, std::string_view bytes);

/// Whether an entry of this name is, or was, such a hidden file.
[[nodiscard]] bool isDraftName(std::string_view name);

/// Keeps other programs from changing the file at `path` between reading and replacing it, as long as they
/// take this lock too. Released with the object, or when the process ends for any reason. Never on the UI
/// thread.
///
/// Locks the file's folder, so that no lock file is left behind; on a server that can lock only files, a
/// hidden file in that folder. No hung or dead process may cost a label: if locking is impossible, or another
/// process holds the lock for all of `patience`, the caller proceeds without it.
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

/// Creates a folder and its missing ancestors, accessible to this user only. An existing folder is not an
/// error.
[[nodiscard]] std::error_code makeFolders(const std::string& path);

}  // namespace ulvak::platform

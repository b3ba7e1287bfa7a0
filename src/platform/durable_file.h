#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <system_error>

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

/// Makes a folder, and those above it that are missing, for this user alone. No error when it is there.
[[nodiscard]] std::error_code makeFolders(const std::string& path);

}  // namespace ulvak::platform

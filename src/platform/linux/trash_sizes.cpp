#include <sys/stat.h>

#include <charconv>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "platform/linux/trash_note.h"
#include "platform/trash.h"

// The list "directorysizes" of a Trash: for each folder in it the bytes that it holds, the date of its note,
// by which the line is known to be about this very folder, and its name. Whoever shows the Trash need not
// walk through it.

namespace ulvak::platform {
namespace {

constexpr std::size_t longestList = 256UZ * 1024 * 1024;

/// The lines of the list by the names of the folders, as they stand in it.
using Lines = std::map<std::string, std::string, std::less<>>;

Lines linesOf(std::string_view list) {
    Lines lines;
    while (!list.empty()) {
        const std::string_view line = list.substr(0, list.find('\n'));
        list.remove_prefix(std::min(line.size() + 1, list.size()));
        const std::size_t blank = line.rfind(' ');
        if (blank != std::string_view::npos)
            lines[std::string(line.substr(blank + 1))] = line;
    }
    return lines;
}

void update(const std::string& trash, const std::map<std::string, std::int64_t>& sizes) {
    const std::string path = trash + "/directorysizes";
    struct stat info{};
    if (::lstat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode))
        return;
    Lines lines = linesOf(readFile(path, longestList).value_or(""));
    std::set<std::string, std::less<>> there;
    for (const std::string& name : listNames(trash + "/" + trashLayout().items))
        there.insert(percentEncoded(name));
    std::erase_if(lines, [&](const auto& line) { return !there.contains(line.first); });
    for (const auto& [name, bytes] : sizes) {
        std::string note = trash;
        note.append("/")
            .append(trashLayout().notes)
            .append("/")
            .append(name)
            .append(trashLayout().noteSuffix);
        const std::string shown = percentEncoded(name);
        if (there.contains(shown) && ::lstat(note.c_str(), &info) == 0)
            lines[shown] = std::to_string(bytes)
                               .append(" ")
                               .append(std::to_string(info.st_mtim.tv_sec))
                               .append(" ")
                               .append(shown);
    }
    if (lines.empty())
        return;  // the Trash was emptied meanwhile
    std::string list;
    for (const auto& [name, line] : lines)
        list.append(line).append("\n");
    // Dropped by design: without the list file managers measure for themselves.
    (void)replaceFile(path, list);
}

}  // namespace

void recordTrashedFolders(std::span<const TrashedFolder> folders) {
    std::map<std::string, std::map<std::string, std::int64_t>> byTrash;
    const std::string middle = "/" + trashLayout().items + "/";
    for (const TrashedFolder& folder : folders) {
        const std::size_t at = folder.location.rfind(middle);
        if (at != std::string::npos)
            byTrash[folder.location.substr(0, at)][folder.location.substr(at + middle.size())] = folder.bytes;
    }
    for (const auto& [trash, sizes] : byTrash)
        update(trash, sizes);
}

}  // namespace ulvak::platform

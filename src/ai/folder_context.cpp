#include "ai/folder_context.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ai/fact_text.h"
#include "ai/folder_owner.h"
#include "core/text.h"
#include "platform/directory.h"
#include "platform/files.h"
#include "platform/volume.h"

namespace ulvak::FolderContext {
namespace {

constexpr std::size_t maxSample = 4'000;
constexpr std::size_t maxTypes = 8;
constexpr std::size_t maxSiblings = 8;
constexpr std::size_t maxItems = 15;
constexpr std::size_t maxChildren = 10;
constexpr std::size_t maxExcerpts = 2;
constexpr std::size_t excerptBytes = 300;
constexpr std::size_t excerptCharacters = 200;
/// Bytes; only smaller files are excerpted.
constexpr std::int64_t excerptLimit = 200'000;
/// Characters; shorter names are too common to mean anything.
constexpr std::size_t tellingLength = 3;

constexpr std::array<std::string_view, 7> backupWords = {"yedek", "backup", "copy", "kopya",
                                                         "bak",   "old",    "eski"};

constexpr std::array<std::string_view, 4> ownedFolders = {"/Library/Application Support/",
                                                          "/Library/Containers/",
                                                          "/Library/Group Containers/", "/Library/Caches/"};

/// Any of these in a home's "Library" tells what it is.
constexpr std::array<std::string_view, 8> libraryFolders = {
    "Application Support", "Caches",    "Containers", "Developer",
    "Group Containers",    "Keychains", "Logs",       "Preferences"};

/// Never accepted as an owner.
constexpr std::array<std::string_view, 13> genericNames = {"local", "share", "config", "bin",    "cache",
                                                           "data",  "user",  "apple",  "google", "microsoft",
                                                           "com",   "app",   "macos"};

constexpr std::array<std::string_view, 8> sourceFolders = {"projects", "Developer", "code",  "src",
                                                           "dev",      "GitHub",    "repos", "Desktop"};

/// Names that mark a folder with source code.
constexpr std::array<std::string_view, 8> sourceMarkers = {".git",        "package.json",  "Package.swift",
                                                           "project.yml", "Cargo.toml",    "go.mod",
                                                           "Makefile",    "CMakeLists.txt"};

constexpr std::array<std::string_view, 12> textExtensions = {"json", "txt", "md",   "toml",  "yaml", "yml",
                                                             "ini",  "cfg", "conf", "plist", "log",  "reg"};

bool isOneOf(std::span<const std::string_view> names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

std::string joined(std::span<const std::string> parts, std::string_view separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (&part != parts.data())
            text += separator;
        text += part;
    }
    return text;
}

/// The first non-empty component.
std::string_view firstPiece(std::string_view rest) {
    const std::size_t begin = std::min(rest.find_first_not_of('/'), rest.size());
    rest.remove_prefix(begin);
    return rest.substr(0, rest.find('/'));
}

/// `path` as written in the text, with the home folder abbreviated.
std::string displayed(std::string_view path, const UserFolders& folders) {
    return FactText::path(Paths::display(path, folders));
}

std::string sizeLine(const Finding& finding, const Circumstances& around) {
    return "Size: " + Format::bytes(finding.size) + ", " + std::to_string(finding.fileCount) +
           " files, last modified " + Format::relativeEnglish(finding.modified, around.now) + ".";
}

std::string fileTypes(const std::string& url, std::size_t limit, const std::stop_token& stop) {
    struct Type {
        std::string key;
        std::size_t position = 0;  ///< order in which the types were first seen
        std::int64_t count = 0;
        std::int64_t bytes = 0;
    };
    std::vector<Type> types;
    std::unordered_map<std::string, std::size_t> positions;
    platform::FileSample sample(url, stop);
    for (std::size_t seen = 0; seen < limit; ++seen) {
        const auto file = sample.next();
        if (!file)
            break;
        const std::string_view extension = Paths::extension(file->name);
        std::string key =
            extension.empty() ? "(no extension)" : std::string(".").append(lowerCased(extension));
        const auto [position, isNew] = positions.try_emplace(key, types.size());
        if (isNew)
            types.push_back({.key = std::move(key), .position = types.size()});
        Type& type = types[position->second];
        ++type.count;
        if (__builtin_add_overflow(type.bytes, file->allocatedSize, &type.bytes))
            type.bytes = INT64_MAX;
    }

    std::ranges::sort(types, [](const Type& a, const Type& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.position < b.position;
    });
    std::vector<std::string> parts;
    for (const Type& type : types) {
        if (parts.size() == maxTypes)
            break;
        parts.push_back(FactText::name(type.key) + " ×" + std::to_string(type.count) + " (" +
                        Format::bytes(type.bytes) + ")");
    }
    return joined(parts, ", ");
}

std::optional<std::string> backupHint(const Finding& finding) {
    const std::string name = lowerCased(Paths::lastComponent(finding.urls.front()));
    // Also inside other words: a superfluous hint costs less than mistaking a backup for junk.
    if (std::ranges::none_of(backupWords, [&](std::string_view word) { return name.contains(word); }))
        return std::nullopt;
    for (const ChildSummary& sibling : finding.siblings) {
        const std::string other = lowerCased(sibling.name);
        if (FactText::characterCount(other) < tellingLength || other == name || !name.starts_with(other))
            continue;
        return "Hint: this looks like a backup copy of the sibling folder \"" + FactText::name(sibling.name) +
               "\" (" + Format::bytes(sibling.size) +
               "), which still exists. Deleting the backup keeps the original but loses the backup.";
    }
    return "Hint: the folder name suggests it is a backup or old copy.";
}

std::string parentLine(std::string_view parent, std::span<const ChildSummary> all,
                       const UserFolders& folders) {
    std::string line = "Parent folder: " + displayed(parent, folders);
    std::vector<std::string> siblings;
    for (const ChildSummary& sibling : all.first(std::min(all.size(), maxSiblings)))
        siblings.push_back(FactText::name(sibling.name) + " (" + Format::bytes(sibling.size) + ")");
    if (!siblings.empty())
        line += ". Siblings: " + joined(siblings, ", ");
    return line;
}

/// A closed directory, without names, if it cannot be opened.
platform::Directory opened(const std::string& folder) {
    return platform::Directory::open(folder).value_or(platform::Directory());
}

/// Visits the first `most` names of a folder, in the system's order, while `goesOn(name)` holds. Stopping
/// early costs only what was read.
template <typename GoesOn>
void forNames(const platform::Directory& folder, std::size_t most, GoesOn goesOn) {
    platform::EntryReader reader(platform::Attributes::listed);
    reader.start(folder);
    for (std::size_t seen = 0; seen < most; ++seen) {
        const platform::DirectoryEntry* entry = reader.next();
        if (entry == nullptr || !goesOn(entry->name))
            return;
    }
}

void addContents(std::vector<std::string>& lines, const Finding& finding) {
    if (finding.children.empty()) {
        std::vector<std::string> names;
        forNames(opened(finding.urls.front()), maxItems, [&](std::string_view name) {
            names.push_back(FactText::name(name));
            return true;
        });
        if (!names.empty())
            lines.push_back("Items inside: " + joined(names, ", "));
        return;
    }
    lines.emplace_back("Largest items inside:");
    for (const ChildSummary& child :
         std::span(finding.children).first(std::min(finding.children.size(), maxChildren)))
        lines.push_back("- " + FactText::name(child.name) + (child.isDirectory ? "/ " : " ") +
                        Format::bytes(child.size));
}

/// Lower case without spaces: how application and folder names are compared.
std::string matchKey(std::string_view name) {
    return replacedAll(lowerCased(name), " ", "");
}

bool isSameApp(std::string_view ownerKey, std::string_view appKey) {
    if (FactText::characterCount(ownerKey) < tellingLength)
        return false;
    return appKey.starts_with(ownerKey) ||
           (ownerKey.starts_with(appKey) && FactText::characterCount(appKey) > tellingLength);
}

std::string_view withoutExtension(std::string_view name) {
    const std::string_view extension = Paths::extension(name);
    return extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
}

/// The first matching name in a folder, within a bound. A folder out of reach has none.
template <typename Predicate>
std::optional<std::string> firstName(const std::string& folder, std::size_t most,
                                     const platform::Reach& reach, Predicate passes) {
    const platform::Reach::Target place = reach.follow(folder);
    if (!place.isThere)
        return std::nullopt;
    std::optional<std::string> found;
    forNames(opened(place.path), most, [&](std::string_view name) {
        if (passes(name))
            found = name;
        return !found;
    });
    return found;
}

std::string installedHint(std::string_view owner, const Circumstances& around, const platform::Reach& reach) {
    const std::string ownerKey = matchKey(owner);
    const auto app = firstName(around.applications, around.maxNames, reach, [&](std::string_view entry) {
        return isSameApp(ownerKey, matchKey(withoutExtension(entry)));
    });
    if (app)
        return "Hint: the app \"" + FactText::name(*app) +
               "\" is installed, so this folder most likely belongs to it.";
    return "Hint: no app named \"" + FactText::name(owner) +
           "\" is installed in /Applications (it may be a command line tool or a removed app).";
}

std::optional<std::string> sourceFolder(std::string_view owner, const Circumstances& around,
                                        const platform::Reach& reach) {
    const std::string wanted = lowerCased(owner);
    for (const std::string_view folder : sourceFolders) {
        const std::string place = Paths::join(around.folders.home, folder);
        const auto entry = firstName(place, around.maxNames, reach,
                                     [&](std::string_view name) { return lowerCased(name) == wanted; });
        if (!entry)
            continue;
        const auto marker =
            firstName(Paths::join(place, *entry), around.maxNames, reach, [](std::string_view name) {
                return isOneOf(sourceMarkers, name) || name.ends_with(".xcodeproj");
            });
        if (marker)
            return Paths::join(Paths::join("~", folder), *entry);
    }
    return std::nullopt;
}

void addSourceHint(std::vector<std::string>& lines, std::string_view owner, const Circumstances& around,
                   const platform::Reach& reach) {
    if (const auto source = sourceFolder(owner, around, reach))
        lines.push_back(
            "Hint: the user has a source code repository with the same name at " + FactText::path(*source) +
            ". The user is probably developing this app, so benchmark, trace, build and test folders "
            "here are likely their own generated data.");
}

/// Where the desktop lists the applications.
void addListedOwnerHints(std::vector<std::string>& lines, const std::string& url,
                         const Circumstances& around) {
    const auto folder = FolderOwner::ownedFolder(url, around.folders);
    if (!folder)
        return;
    using Kind = FolderOwner::Facts::Kind;
    const FolderOwner::Facts owner = FolderOwner::facts(*folder, *around.installed, around.maxOwnNames);
    const std::string name = FactText::name(owner.name);
    constexpr std::string_view belongs = "\" is installed, so this folder most likely belongs to it.";
    if (owner.kind == Kind::app)
        lines.push_back(std::string("Hint: the app \"").append(name).append(belongs));
    else if (owner.kind == Kind::command)
        lines.push_back(std::string("Hint: the command line tool \"").append(name).append(belongs));
    else if (owner.kind == Kind::absent)
        lines.push_back("Hint: no app or command line tool named \"" + name +
                        "\" is installed (it may be part of something else or of a removed app).");
    if (owner.isRunning)
        lines.push_back("Hint: \"" + name + "\" is currently running.");
    const platform::Reach reach({&around.folders.home, 1}, platform::Reach::Others::prompt);
    addSourceHint(lines, FolderOwner::ownerName(*folder), around, reach);
}

void addOwnerHints(std::vector<std::string>& lines, const std::string& url,
                   std::span<const std::string> runningApps, const Circumstances& around) {
    if (around.installed) {
        addListedOwnerHints(lines, url, around);
        return;
    }
    const auto owner = ownerName(url, around.folders);
    if (!owner)
        return;
    const platform::Reach reach({&around.folders.home, 1}, platform::Reach::Others::prompt);
    lines.push_back(installedHint(*owner, around, reach));
    const std::string ownerKey = matchKey(*owner);
    if (std::ranges::any_of(runningApps,
                            [&](const std::string& app) { return isSameApp(ownerKey, matchKey(app)); }))
        lines.push_back("Hint: \"" + FactText::name(*owner) + "\" is currently running.");
    addSourceHint(lines, *owner, around, reach);
}

/// Whether a home has a library with applications' folders, as on the system whose applications are folders.
bool hasLibrary(const UserFolders& folders) {
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    return std::ranges::any_of(libraryFolders, [&](std::string_view name) {
        const auto place = reach.follow(Paths::join(Paths::join(folders.home, "Library"), name));
        const auto info = place.isThere ? platform::fileInfo(place.path) : std::nullopt;
        return info && info->isDirectory;
    });
}

void addExcerpts(std::vector<std::string>& lines, const std::string& url, const Circumstances& around) {
    std::vector<std::string> excerpts;
    const platform::Directory folder = opened(url);
    std::size_t candidates = 0;
    forNames(folder, around.maxNames, [&](std::string_view listed) {
        if (candidates == around.maxCandidates || excerpts.size() == maxExcerpts)
            return false;
        if (!isOneOf(textExtensions, lowerCased(Paths::extension(listed))))
            return true;
        ++candidates;
        const std::string name(listed);
        const auto length = platform::fileLength(folder, name);
        if (!length || *length < 1 || *length >= excerptLimit)
            return true;
        std::string line = "- " + FactText::name(name) + ": ";
        const std::string text =
            FactText::excerpt(platform::fileBeginning(folder, name, excerptBytes), excerptCharacters, line);
        if (!text.empty())
            excerpts.push_back(line.append(text));
        return true;
    });
    if (excerpts.empty())
        return;
    lines.emplace_back("Small text files inside:");
    std::ranges::move(excerpts, std::back_inserter(lines));
}

}  // namespace

Applications Applications::ofThisMachine(const UserFolders& folders) {
    if (!hasLibrary(folders)) {
        if (auto installed = platform::installedApplications())
            return {.running = {},
                    .installed = std::make_shared<platform::InstalledApplications>(std::move(*installed))};
    }
    return {.running = platform::runningApplications(), .installed = nullptr};
}

std::string build(const Finding& finding, std::string_view userNote, std::span<const std::string> runningApps,
                  Extent extent, const Circumstances& around) {
    if (finding.urls.empty()) {
        std::fputs("ulvak: a finding without a url\n", stderr);
        std::abort();
    }
    const std::string& url = finding.urls.front();
    std::vector<std::string> lines;
    lines.push_back("Path: " + displayed(url, around.folders));
    lines.push_back(sizeLine(finding, around));
    // Before the folder is listed, which may update the date.
    if (const auto accessed = platform::lastAccess(url))
        lines.push_back("Last opened/read: " + Format::relativeEnglish(accessed, around.now) + ".");

    if (extent == Extent::full) {
        if (auto hint = backupHint(finding))
            lines.push_back(std::move(*hint));
        if (finding.parentPath)
            lines.push_back(parentLine(*finding.parentPath, finding.siblings, around.folders));
        addContents(lines, finding);
    }
    if (const std::string types = fileTypes(url, maxSample, around.stop); !types.empty())
        lines.push_back("File types (sampled): " + types);
    if (extent == Extent::full) {
        addOwnerHints(lines, url, runningApps, around);
        addExcerpts(lines, url, around);
        if (const std::string_view note = FactText::trimmed(userNote); !note.empty())
            lines.push_back("The user says about this folder: \"" + std::string(note) + "\"");
    }
    return joined(lines, "\n");
}

std::optional<std::string> ownerName(std::string_view path, const UserFolders& folders) {
    const std::string_view home = folders.home == "/" ? std::string_view() : std::string_view(folders.home);
    if (!path.starts_with(home))
        return std::nullopt;
    const std::string_view belowHome = path.substr(home.size());

    std::string_view piece;
    const auto owned = std::ranges::find_if(
        ownedFolders, [&](std::string_view folder) { return belowHome.starts_with(folder); });
    if (owned != ownedFolders.end())
        piece = firstPiece(belowHome.substr(owned->size()));
    if (piece.empty() && belowHome.starts_with("/."))
        piece = firstPiece(belowHome.substr(2));
    if (piece.empty())
        return std::nullopt;

    // In a reverse-domain identifier such as com.example.Editor, the application is the last component.
    std::vector<std::string_view> parts;
    for (std::string_view rest = piece; !rest.empty();) {
        const std::size_t dot = std::min(rest.find('.'), rest.size());
        if (dot > 0)
            parts.push_back(rest.substr(0, dot));
        rest.remove_prefix(std::min(dot + 1, rest.size()));
    }
    const std::string_view owner = parts.size() >= 3 ? parts.back() : piece;
    if (isOneOf(genericNames, lowerCased(owner)))
        return std::nullopt;
    return std::string(owner);
}

}  // namespace ulvak::FolderContext

#include "classify/folder_evidence.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/glob.h"
#include "core/paths.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace ulvak {
namespace {

using platform::Directory;

/// Evidence lies in folders of this size; a cache may have a million entries.
constexpr std::size_t maxNames = 1024;
constexpr std::string_view cacheTagSignature = "Signature: 8a477f597d28d172789f06886806bc55";

std::string lowerCasedAscii(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return platform::lowerAscii(c); });
    return text;
}

std::vector<std::string> firstNames(const Directory& folder) {
    std::vector<std::string> names;
    // A listing of its own: the position in the folder's belongs to others.
    const auto listed = folder.openBelow(".");
    if (!listed)
        return names;
    platform::EntryReader reader(platform::Attributes::listed);
    reader.start(*listed);
    while (names.size() < maxNames) {
        const platform::DirectoryEntry* entry = reader.next();
        if (entry == nullptr)
            break;
        names.emplace_back(entry->name);
    }
    return names;
}

bool exists(const Directory& folder, const std::string& name) {
    return platform::fileLength(folder, name).has_value() || folder.openBelow(name.c_str()).has_value();
}

/// Looks for what the patterns below `node` name, in at most `budget` folders and names.
bool keeps(const PatternTree::Node& node, const Directory& folder, const std::vector<std::string>& names,
           std::size_t& budget) {
    const auto isThere = [&](const PatternTree::Node& next, const std::string& name) {
        if (budget == 0)
            return false;
        --budget;
        if (next.isKept && exists(folder, name))
            return true;
        if (!next.keepsBelow)
            return false;
        const auto below = folder.openBelow(name.c_str());
        return below && keeps(next, *below, firstNames(*below), budget);
    };
    const auto leads = [](const PatternTree::Branch& branch) {
        return branch.node->isKept || branch.node->keepsBelow;
    };
    const auto isNamed = [&](const std::string& name) {
        const auto found = node.literal.find(lowerCasedAscii(name));
        return found != node.literal.end() && leads(found->second) && isThere(*found->second.node, name);
    };
    if (std::ranges::any_of(names, isNamed))
        return true;
    // A listing that was cut off says nothing of the rest.
    if (names.size() >= maxNames && std::ranges::any_of(node.literal, [&](const auto& entry) {
            return leads(entry.second) && isThere(*entry.second.node, entry.second.component);
        }))
        return true;
    return std::ranges::any_of(node.wild, [&](const PatternTree::Branch& branch) {
        return leads(branch) && std::ranges::any_of(names, [&](const std::string& name) {
                   return globMatches(branch.component, name, {.pathname = true, .ignoreCase = true}) &&
                          isThere(*branch.node, name);
               });
    });
}

}  // namespace

const Directory* FolderEvidence::folder() {
    if (!folder_)
        folder_ = Directory::open(path_).value_or(Directory());
    return folder_->isOpen() ? &*folder_ : nullptr;
}

const std::vector<std::string>& FolderEvidence::names() {
    if (!names_) {
        const Directory* open = folder();
        names_ = open != nullptr ? firstNames(*open) : std::vector<std::string>();
    }
    return *names_;
}

std::optional<bool> FolderEvidence::wasSeen(std::string_view entry) const {
    const auto id = noted_.names == nullptr ? std::nullopt : noted_.names->find(entry);
    return id ? std::optional(std::ranges::binary_search(noted_.seen, *id)) : std::nullopt;
}

bool FolderEvidence::hasEntry(const std::string& name) {
    if (const auto seen = wasSeen(name))
        return *seen;
    const Directory* open = folder();
    return open != nullptr && (exists(*open, name) || platform::linkTarget(Paths::join(path_, name)));
}

bool FolderEvidence::hasFolder(const std::string& name) {
    const Directory* open = folder();
    return open != nullptr && open->openBelow(name.c_str()).has_value();
}

bool FolderEvidence::hasFile(const std::string& relativePath) {
    const Directory* open = folder();
    if (open == nullptr)
        return false;
    const std::size_t slash = relativePath.rfind('/');
    if (slash == std::string::npos)
        return platform::fileLength(*open, relativePath).has_value();
    const auto inner = open->openBelow(relativePath.substr(0, slash).c_str());
    return inner && platform::fileLength(*inner, relativePath.substr(slash + 1)).has_value();
}

bool FolderEvidence::hasCacheTag() {
    const Directory* open = folder();
    return open != nullptr && platform::fileBeginning(*open, std::string(cacheTag),
                                                      cacheTagSignature.size()) == cacheTagSignature;
}

/// Looked up in the listing, which costs as much as a few lookups on the disk.
bool FolderEvidence::lists(const std::string& name) {
    if (const auto seen = wasSeen(name))
        return *seen;
    const bool isListed = std::ranges::find(names(), name) != names().end();
    return isListed || (names().size() == maxNames && hasEntry(name));
}

bool FolderEvidence::holdsOneOf(std::span<const std::string> entries) {
    return std::ranges::any_of(entries, [&](const std::string& entry) {
        if (entry == cacheTag)
            return lists(entry) && hasCacheTag();
        if (!entry.contains('*'))
            return lists(entry);
        if (const auto seen = wasSeen(entry))
            return *seen;
        return std::ranges::any_of(names(),
                                   [&](const std::string& name) { return globMatches(entry, name); });
    });
}

bool FolderEvidence::holdsKept(const PatternTree::Node& node, std::span<const std::string> known) {
    constexpr std::size_t maxLooks = 2000;
    std::size_t budget = maxLooks;
    const Directory* open = folder();
    if (open == nullptr)
        return false;
    if (names().size() < maxNames)
        return keeps(node, *open, names(), budget);
    std::vector<std::string> asked(known.begin(), known.end());
    asked.insert(asked.end(), names().begin(), names().end());
    return keeps(node, *open, asked, budget);
}

}  // namespace ulvak

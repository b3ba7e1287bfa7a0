#pragma once

#include <cstddef>
#include <expected>
#include <set>
#include <string>

#include "platform/posix/removal_calls.h"
#include "platform/removal.h"

namespace ulvak::platform::posix {

/// Folders that one removal holds open at a time; those further up are found again through "..".
constexpr std::size_t mostOpenFolders = 64;

/// As `removeEntry` of `platform/removal.h`, by these calls. Sub-folders are removed by several threads,
/// which end with the call, once the first few have shown that there are some to share; where a thread cannot
/// be started the others do its work. When memory runs out on any of them this throws `std::bad_alloc`.
[[nodiscard]] std::expected<void, FileError> removeTree(const Directory& parent, const std::string& name,
                                                        const ItemIdentity& item,
                                                        const std::set<FileNumber>& kept,
                                                        const RemovalCalls& calls);

}  // namespace ulvak::platform::posix

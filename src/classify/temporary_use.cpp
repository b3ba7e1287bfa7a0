#include "classify/temporary_use.h"

#include <algorithm>
#include <chrono>

#include "platform/temporary_items.h"

namespace ulvak {

/// As long as systems keep temporary files: longer where they outlast a restart.
int TemporaryUse::quietDays() const {
    constexpr int usual = 10;
    constexpr int lasting = 30;
    return temp_ == "/var/tmp" ? lasting : usual;
}

bool TemporaryUse::isOpen(const std::string& path) {
    if (!open_)
        open_ = platform::openBelow(temp_);
    return std::ranges::any_of(*open_, [&](const std::string& open) { return Paths::isWithin(open, path); });
}

std::string TemporaryUse::objection(const std::string& path, const DirNode& item) {
    if (!isShared_)
        isShared_ = platform::isSharedFolder(temp_);
    if (!*isShared_)
        return {};
    if (!platform::isOwnItem(path).value_or(false))
        return " Ama sana ait değil: başka bir kullanıcı ya da sistem kullanıyor olabilir.";
    const auto quiet = std::chrono::system_clock::now() - std::chrono::days(quietDays());
    if (!item.modified || *item.modified > quiet)
        return " Ama son " + std::to_string(quietDays()) +
               " günde değişmiş: bir program hâlâ kullanıyor olabilir.";
    if (platform::holdsSocket(path))
        return " Ama içinde çalışan bir programın bağlantı noktası var.";
    if (isOpen(path))
        return " Ama şu anda açık: bir program kullanıyor.";
    return {};
}

}  // namespace ulvak

#include "classify/temporary_use.h"

#include <algorithm>
#include <chrono>

#include "platform/files.h"
#include "platform/temporary_items.h"

namespace ulvak {

const std::string& TemporaryUse::realTemp() {
    if (!realTemp_)
        realTemp_ = platform::resolvedPath(temp_).value_or(temp_);
    return *realTemp_;
}

/// As long as systems keep temporary files: longer where they outlast a restart.
int TemporaryUse::quietDays() {
    constexpr int usual = 10;
    constexpr int lasting = 30;
    return Paths::isWithin(realTemp(), "/var/tmp") ? lasting : usual;
}

bool TemporaryUse::isOpen(const std::string& path) {
    if (!open_)
        open_ = platform::openBelow(realTemp());
    const std::string real = Paths::join(realTemp(), Paths::lastComponent(path));
    return std::ranges::any_of(*open_, [&](const std::string& open) { return Paths::isWithin(open, real); });
}

std::string TemporaryUse::objection(const std::string& path, const DirNode& item) {
    if (!isShared_)
        isShared_ = platform::isSharedFolder(temp_);
    if (!*isShared_)
        return {};
    if (!platform::isOwnItem(path).value_or(false))
        return " Ama sana ait değil: başka bir kullanıcı ya da sistem kullanıyor olabilir.";
    const auto quiet = now_ - std::chrono::days(quietDays());
    std::string isRecent =
        " Ama son " + std::to_string(quietDays()) + " günde değişmiş: bir program hâlâ kullanıyor olabilir.";
    if (!item.modified || *item.modified > quiet)
        return isRecent;
    const platform::ItemContents contents = platform::contentsOf(path);
    if (contents.changed > quiet)
        return isRecent;
    if (!contents.isAllOwn)
        return " Ama içinde sana ait olmayan dosyalar var.";
    if (contents.holdsSocket)
        return " Ama içinde çalışan bir programın bağlantı noktası var.";
    if (isOpen(path))
        return " Ama şu anda açık: bir program kullanıyor.";
    if (!contents.wasSeenWhole)
        return " Ama içindekilerin hepsine bakılamadı: biri hâlâ kullanılıyor olabilir.";
    return {};
}

}  // namespace ulvak

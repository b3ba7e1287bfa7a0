#include "clean/clean_error.h"

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "core/paths.h"
#include "core/text.h"

namespace ulvak {
namespace {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

constexpr std::array<std::pair<int, std::string_view>, 19> reasons = {{
    {EACCES, "bunun için iznin yok."},
    {EPERM, "bunun için iznin yok ya da öğe değiştirilemez olarak işaretli."},
    {ENOENT, "öğe artık yerinde değil."},
    {EBUSY, "öğe kullanımda ya da içinde başka bir disk bağlı."},
    {ENOSPC, "diskte yer kalmadı."},
    {EDQUOT, "disk kotan dolu."},
    {EROFS, "disk salt okunur."},
    {EIO, "disk okunamadı ya da yazılamadı."},
    {ENOTEMPTY, "silinirken içine sürekli yeni dosya yazılıyor."},
    {ELOOP, "yolun üzerinde bir bağlantı var; bağlantılar izlenmez."},
    {ENOTDIR, "yolun üzerindeki bir klasör artık klasör değil."},
    {EXDEV, "öğe başka bir diskte."},
    {ESTALE, "öğe bu sırada başka bir yere taşındı."},
    {EDEADLK, "klasörün içindekiler bu bilgisayarda değil; indirilmeden silinemiyor."},
    {ENOTSUP, "bu diskte çöp kutusu yok."},
    {ENAMETOOLONG, "adı ya da yolu çok uzun."},
    {EEXIST, "çöp kutusunda boş bir ad bulunamadı."},
    {EMFILE, "açık dosya sınırına ulaşıldı."},
    {ENOMEM, "bellek yetmedi."},
}};

/// Why, in Turkish; the system's own words for what is rare.
std::string reason(std::error_code code) {
    for (const auto& [number, text] : reasons) {
        if (code == std::error_code(number, std::generic_category()))
            return std::string(text);
    }
    return code.message() + ".";
}

std::string describe(const platform::FileError& error) {
    std::string text = "“" + Paths::display(error.path) + "” kaldırılamadı: " + reason(error.code);
    if (!error.detail.empty())
        text += " (" + error.detail + ")";
    return text;
}

std::string describe(const StartError& error) {
    return "“" + error.program + "” başlatılamadı: " +
           (error.code == std::errc::no_such_file_or_directory ? "program bu bilgisayarda yok."
                                                               : reason(error.code));
}

}  // namespace

std::string errorDescription(const CleanError& error) {
    return std::visit(Overloaded{[](const CleanError::Protected& place) {
                                     return place.path + " korumalı bir konum; Ulvak burayı silmez.";
                                 },
                                 [](const CleanError::AppsRunning& apps) {
                                     return "Önce şunları kapat: " + joined(apps.names);
                                 },
                                 [](const CleanError::Failed& failed) { return failed.message; }},
                      error.value);
}

std::string errorDescription(const CleanFailure& failure) {
    return std::visit(Overloaded{[](const CleanError& error) { return errorDescription(error); },
                                 [](const auto& error) { return describe(error); }},
                      failure);
}

}  // namespace ulvak

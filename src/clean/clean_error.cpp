#include "clean/clean_error.h"

#include <array>
#include <cerrno>
#include <string>
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

constexpr std::array<std::pair<int, std::string_view>, 31> reasons = {{
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
    {ENAMETOOLONG, "adı ya da yolu bu disk için çok uzun."},
    {EEXIST, "aynı adda başka bir öğe var."},
    {EISDIR, "öğe artık bir klasör."},
    {EINVAL, "disk buna izin vermiyor."},
    {ETXTBSY, "öğe şu anda çalışan bir program."},
    {EMLINK, "klasörde daha fazla öğeye yer yok."},
    {EFBIG, "dosya bu disk için çok büyük."},
    {EMFILE, "aynı anda çok fazla dosya açık."},
    {ENFILE, "bilgisayarda aynı anda çok fazla dosya açık."},
    {ENOMEM, "bellek yetmedi."},
    {EAGAIN, "sistem şu anda çok meşgul; biraz sonra yeniden dene."},
    {EINTR, "işlem yarıda kesildi; yeniden dene."},
    {ENODEV, "disk artık bağlı değil."},
    {ENXIO, "disk artık bağlı değil."},
    {ETIMEDOUT, "disk ya da sunucu yanıt vermiyor."},
    {ENOEXEC, "bu bilgisayarda çalışmıyor."},
}};

/// Turkish. Rare errors are shown by number: the system's messages are in another language.
std::string reason(std::error_code code) {
    for (const auto& [number, text] : reasons) {
        if (code == std::error_code(number, std::generic_category()))
            return std::string(text);
    }
    return "sistem beklenmedik bir hata bildirdi (" + std::to_string(code.value()) + ").";
}

std::string describe(const platform::FileError& error, const UserFolders& folders) {
    std::string text = "“" + Paths::display(error.path, folders) + "” kaldırılamadı: " + reason(error.code);
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

std::string errorDescription(const CleanFailure& failure, const UserFolders& folders) {
    return std::visit(Overloaded{[](const CleanError& error) { return errorDescription(error); },
                                 [&](const platform::FileError& error) { return describe(error, folders); },
                                 [](const StartError& error) { return describe(error); }},
                      failure);
}

}  // namespace ulvak

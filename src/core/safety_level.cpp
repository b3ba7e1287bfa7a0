#include "core/safety_level.h"

#include <algorithm>

#include "core/words.h"

namespace ulvak {
namespace {

using Infos = std::array<SafetyLevelInfo, allSafetyLevels.size()>;

const Infos& infos() {
    // clang-format off
    static const Infos all = {{
        {SafetyLevel::safe,        "safe",        0, "Güvenle silinebilir", "checkmark.shield.fill",                   "green",  "Geçici dosyalar ve kayıtlar. Silinince hiçbir şey kaybolmaz."},
        {SafetyLevel::regenerable, "regenerable", 1, "Yeniden oluşur",      "arrow.triangle.2.circlepath.circle.fill", "teal",   "Önbellek ve derleme çıktıları. Gerekince tekrar indirilir veya oluşturulur."},
        {SafetyLevel::caution,     "caution",     2, "Dikkat",              "exclamationmark.triangle.fill",           "orange", "Silinebilir ama bir bedeli var: ayarlar, emülatörler ya da uzun indirmeler gidebilir."},
        {SafetyLevel::keep,        "keep",        4, "Dokunma",             "hand.raised.fill",                        "red",    "Kişisel dosyaların ya da sistemin ihtiyaç duyduğu veriler."},
        {SafetyLevel::unknown,     "unknown",     3, "Bilinmiyor",          "questionmark.circle.fill",                "gray",   words().unknownSummary},
    }};
    // clang-format on
    return all;
}

}  // namespace

const SafetyLevelInfo& info(SafetyLevel level) {
    return infos()[static_cast<std::size_t>(level)];
}

std::optional<SafetyLevel> safetyLevel(std::string_view rawValue) {
    const auto found = std::ranges::find(infos(), rawValue, &SafetyLevelInfo::rawValue);
    return found == infos().end() ? std::nullopt : std::optional(found->level);
}

void sortForDisplay(std::span<SafetyLevel> levels) {
    std::ranges::stable_sort(levels, {}, [](SafetyLevel level) { return info(level).order; });
}

std::array<SafetyLevel, allSafetyLevels.size()> displayedSafetyLevels() {
    auto levels = allSafetyLevels;
    sortForDisplay(levels);
    return levels;
}

}  // namespace ulvak

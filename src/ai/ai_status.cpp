#include "ai/ai_status.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "core/text.h"

namespace ulvak {
namespace {

/// Indexed by reason.
constexpr std::array<std::string_view, 4> texts = {
    "Bu Mac Apple Intelligence'ı desteklemiyor.",
    "Apple Intelligence kapalı. Sistem Ayarları > Apple Intelligence ve Siri'den açabilirsin.",
    "Apple Intelligence modeli henüz hazır değil (indiriliyor olabilir). Biraz sonra tekrar dene.",
    "Apple Intelligence şu an kullanılamıyor.",
};
static_assert(static_cast<std::size_t>(platform::ModelAbsenceReason::other) + 1 == texts.size());

}  // namespace

std::string AIStatus::plainText() const {
    return unavailable ? "unavailable(\"" + *unavailable + "\")" : "available";
}

AIStatus AIStatus::current(const platform::LanguageModel& model, std::stop_token stop) {
    const auto absence = model.absence(std::move(stop));
    if (!absence)
        return {};
    return {.unavailable = std::string(texts[static_cast<std::size_t>(absence->reason)]),
            .hint = printable(absence->detail),
            .isSilent = absence->isSilent};
}

}  // namespace ulvak

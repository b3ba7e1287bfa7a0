#include "ai/ai_status.h"

#include <cstddef>
#include <utility>

#include "core/text.h"
#include "core/words.h"

namespace ulvak {

std::string AIStatus::plainText() const {
    return unavailable ? "unavailable(\"" + *unavailable + "\")" : "available";
}

AIStatus AIStatus::current(const platform::LanguageModel& model, std::stop_token stop) {
    const auto absence = model.absence(std::move(stop));
    if (!absence)
        return {};
    return {.unavailable = std::string(words().modelAbsence[static_cast<std::size_t>(absence->reason)]),
            .hint = printable(absence->detail),
            .isSilent = absence->isSilent};
}

}  // namespace ulvak

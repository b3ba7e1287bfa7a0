#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ai/ai_verdict.h"
#include "ai/fact_text.h"
#include "core/text.h"

// Parses the input as a model's answer. Whatever it is, the result must be safe to show.

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

bool isFitToShow(std::string_view text, std::size_t longest) {
    return ulvak::printable(text) == text && ulvak::FactText::characterCount(text) <= longest;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t maxErrorLength = 300;
    const auto verdict = ulvak::aiVerdictFromJson({reinterpret_cast<const char*>(data), size});
    if (!verdict) {
        check(!verdict.error().text.empty() && isFitToShow(verdict.error().text, maxErrorLength));
        return 0;
    }
    check(ulvak::aiLevel(ulvak::rawValue(verdict->level)) == verdict->level);
    check(isFitToShow(verdict->title, ulvak::AIVerdict::maxTitleLength));
    check(isFitToShow(verdict->reason, ulvak::AIVerdict::maxReasonLength));
    return 0;
}

#include "core/verdict.h"

#include <algorithm>

#include "core/hash.h"
#include "core/words.h"

namespace ulvak {
namespace {

using Infos = std::array<VerdictSourceInfo, allVerdictSources.size()>;

const Infos& infos() {
    static const Infos all = {{
        {VerdictSource::rule, "rule", "Kural", "book.closed"},
        {VerdictSource::ai, "ai", words().model, "apple.intelligence"},
        {VerdictSource::heuristic, "heuristic", "Tahmin", "wand.and.stars"},
        {VerdictSource::user, "user", "Senin etiketin", "person.fill"},
    }};
    return all;
}

}  // namespace

const VerdictSourceInfo& info(VerdictSource source) {
    return infos()[static_cast<std::size_t>(source)];
}

std::optional<VerdictSource> verdictSource(std::string_view rawValue) {
    const auto found = std::ranges::find(infos(), rawValue, &VerdictSourceInfo::rawValue);
    return found == infos().end() ? std::nullopt : std::optional(found->source);
}

std::string badgeText(const Verdict& verdict) {
    std::string text(info(verdict.source).label);
    if (verdict.confidence)
        text += " %" + std::to_string(*verdict.confidence);
    return text;
}

}  // namespace ulvak

std::size_t std::hash<ulvak::Verdict>::operator()(const ulvak::Verdict& verdict) const noexcept {
    std::size_t seed = 0;
    ulvak::hashCombine(seed, ulvak::info(verdict.level).rawValue);
    ulvak::hashCombine(seed, verdict.title);
    ulvak::hashCombine(seed, verdict.explanation);
    ulvak::hashCombine(seed, ulvak::info(verdict.source).rawValue);
    ulvak::hashCombine(seed, verdict.confidence.has_value());
    if (verdict.confidence)
        ulvak::hashCombine(seed, *verdict.confidence);
    return seed;
}

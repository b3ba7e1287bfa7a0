// The developer tools' JSON: whatever they print, reading it ends with a map whose entries are sound.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "survey/simulators.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto& [udid, simulator] : ulvak::Simulators::parse(text)) {
        // A key can also be written with escapes.
        const bool mayHaveNames = text.contains("\"name\"") || text.contains('\\');
        if (udid != simulator.udid || (simulator.name.empty() && !udid.empty() && !mayHaveNames))
            std::abort();
    }
    (void)ulvak::Simulators::readableRuntime(text);
    (void)ulvak::Simulators::parseIso8601(text);
    return 0;
}

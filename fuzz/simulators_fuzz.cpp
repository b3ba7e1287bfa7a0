// Parses the input as the developer tools' JSON. Whatever it is, the result must be a map of valid entries.

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

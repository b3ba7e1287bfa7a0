#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/text.h"
#include "store/verdict_file.h"

// Parses the input as a file of remembered verdicts, and as finding ids, one per line, for which verdicts are
// stored. In both cases writing and reading back must not change the entries in memory.

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkComesBack(const ulvak::VerdictEntries& entries) {
    const std::string text = ulvak::encodeEntries(entries).value_or("");
    check(!text.empty() && ulvak::wellFormed(text) == text);
    const auto again = ulvak::decodeEntries(text);
    check(again && *again == entries);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    if (const auto entries = ulvak::decodeEntries(input)) {
        checkComesBack(*entries);
        return 0;
    }
    ulvak::VerdictEntries entries;
    while (!input.empty()) {
        const std::string_view id = input.substr(0, input.find('\n'));
        const auto number = static_cast<std::int64_t>(input.size());
        entries.insert_or_assign(std::string(id),
                                 ulvak::VerdictEntry{.verdict = {.title = "t", .confidence = number},
                                                     .size = -number,
                                                     .date = {static_cast<double>(number) / 3}});
        input.remove_prefix(id.size() < input.size() ? id.size() + 1 : id.size());
    }
    checkComesBack(entries);
    return 0;
}

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "ai/server/model_reply.h"

// Parses the input as a model server's reply: a byte that selects the status, then the body.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using ulvak::platform::ModelError;
    constexpr long statuses[] = {200, 204, 302, 400, 404, 500, 503};
    if (size == 0)
        return 0;
    const long status = statuses[data[0] % std::size(statuses)];
    const std::string_view body(reinterpret_cast<const char*>(data) + 1, size - 1);
    const auto answer = ulvak::readAnswer(status, body, "http://127.0.0.1:8080");
    if (answer ? answer->size() > size
               : answer.error().text.empty() || answer.error().text.size() > ModelError::maxTextLength)
        std::abort();
    for (const std::string& name : ulvak::readModelList(status, body).names) {
        if (name.empty() || name.size() > size)
            std::abort();
    }
    return 0;
}

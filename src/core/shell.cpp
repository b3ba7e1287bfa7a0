#include "core/shell.h"

#include <utility>

#include "core/text.h"

namespace ulvak::Shell {

std::expected<Result, std::error_code> run(const std::string& path, std::span<const std::string> arguments,
                                           std::stop_token stop) {
    auto ended = platform::runProgram(path, arguments, std::move(stop));
    if (ended)
        ended->error = wellFormed(ended->error);
    return ended;
}

}  // namespace ulvak::Shell

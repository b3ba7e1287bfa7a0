#include "core/shell.h"

#include <utility>

#include "core/text.h"
#include "platform/process.h"

namespace ulvak::Shell {

std::expected<Result, std::error_code> run(const std::string& path, std::span<const std::string> arguments,
                                           std::stop_token stop) {
    auto ended = platform::runProgram(path, arguments, std::move(stop));
    if (!ended)
        return std::unexpected(ended.error());
    return Result{
        .status = ended->status, .output = std::move(ended->output), .error = wellFormed(ended->error)};
}

}  // namespace ulvak::Shell

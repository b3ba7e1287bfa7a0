#include "platform/program.h"

#include <unistd.h>

#include <cerrno>
#include <vector>

namespace ulvak::platform {

std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments) {
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    return {errno, std::generic_category()};
}

}  // namespace ulvak::platform

#include "platform/program.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "platform/posix/environment.h"

namespace ulvak::platform {

void forgetRelativeFolders() {
    for (const char* name : {"HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                             "XDG_RUNTIME_DIR", "XDG_STATE_HOME"}) {
        if (!posix::absoluteFromEnvironment(name))
            ::unsetenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
    }
}

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

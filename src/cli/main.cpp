#include <span>
#include <string>
#include <system_error>

#include "cli/command_line.h"
#include "cli/dump.h"
#include "cli/standard_streams.h"
#include "core/paths.h"
#include "core/text.h"
#include "platform/process.h"

namespace {

using namespace ulvak;

/// Replaces this process with the window program, which is beside this one in the build tree and in libexec
/// when installed. Returns the exit status if neither can be started, naming the one that exists, or else
/// where it should have been installed.
int openWindow(std::span<const char* const> arguments) {
    const std::string own = platform::ownProgram().value_or("");
    std::string tried = "ulvak-window";
    auto failure = std::make_error_code(std::errc::no_such_file_or_directory);
    for (const char* place : {"ulvak-window", ULVAK_LIBEXEC "/ulvak/ulvak-window"}) {
        if (own.empty() && *place != '/')
            continue;  // never start a program relative to the current directory
        tried = *place == '/' ? place : own.substr(0, own.rfind('/') + 1) + place;
        failure = platform::becomeProgram(tried, arguments);
        if (failure != std::errc::no_such_file_or_directory)
            break;
    }
    printError("ulvak: pencere açılamadı: " + printable(tried) + ": " + failure.message() +
               "\nPenceresiz taramak için: ulvak --dump\n");
    return 1;
}

}  // namespace

int main(int argc, char* argv[]) {
    prepareStandardStreams();
    platform::forgetRelativeFolders();
    const std::span<const char* const> all(argv, static_cast<std::size_t>(argc));
    const std::span<const char* const> arguments = all.empty() ? all : all.subspan(1);
    const CommandLine line = CommandLine::parse(arguments);
    if (line.help || line.version) {
        print(line.help ? helpText() : versionText());
        return 0;
    }
    for (const std::string& argument : line.unknown)
        printError("ulvak: bilinmeyen seçenek: " + printable(argument) + "\n");
    if (line.dump)
        return Diagnostics::run(line.ai, UserFolders::ofCurrentUser()) ? 0 : 1;
    if (!line.unknown.empty()) {
        printError("Yardım için: ulvak --help\n");
        return 2;
    }
    return openWindow(arguments);
}

#include <span>

#include "app/command_line.h"
#include "app/dump.h"
#include "app/standard_streams.h"
#include "core/text.h"

int main(int argc, char* argv[]) {
    using namespace ulvak;
    prepareStandardStreams();
    const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
    const CommandLine line = CommandLine::parse(arguments.empty() ? arguments : arguments.subspan(1));
    if (line.help || line.version) {
        print(line.help ? helpText() : versionText());
        return 0;
    }
    for (const std::string& argument : line.unknown)
        printError("ulvak: bilinmeyen seçenek: " + printable(argument) + "\n");
    if (line.dump) {
        Diagnostics::run(line.ai);
        return 0;
    }
    if (line.unknown.empty())
        printError("ulvak: bu sürümde pencere yok; taramak için: ulvak --dump\n");
    printError("Yardım için: ulvak --help\n");
    return 2;
}

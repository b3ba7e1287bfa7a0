#include "platform/linux/own_processes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include "platform/file_descriptor.h"
#include "platform/files.h"
#include "platform/process.h"

namespace ulvak::platform {
namespace {

/// Long enough to find the program that an interpreter runs.
constexpr std::size_t maxCommandLineLength = 4096;

/// The beginning of a /proc file; empty if it may not be read.
std::string beginning(const std::string& path) {
    std::array<char, maxCommandLineLength> buffer{};
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const ssize_t count = file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : 0;
    return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

std::string firstLine(const std::string& path) {
    std::string line = beginning(path);
    line.resize(std::min(line.find('\n'), line.size()));
    return line;
}

std::string executableOf(const std::string& process) {
    std::string path = linkTarget(process + "/exe").value_or("");
    // An application that was updated while running.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted))
        path.resize(path.size() - deleted.size());
    return path;
}

/// Whether a process belongs to this user. Judged by its status: the owner of its files in /proc is root if
/// it is non-dumpable, as password managers are.
bool isOwn(const std::string& process) {
    const std::string status = beginning(process + "/status");
    constexpr std::string_view label = "\nUid:\t";
    const std::size_t at = status.find(label);
    return at != std::string::npos &&
           std::strtoul(status.c_str() + at + label.size(), nullptr, 10) == ::getuid();
}

}  // namespace

std::vector<std::string> splitAt(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::vector<ProcessFacts> ownProcesses() {
    std::vector<ProcessFacts> processes;
    const std::string self = std::to_string(::getpid());
    for (const std::string& name : listNames("/proc")) {
        const std::string process = "/proc/" + name;
        if (name == self || std::isdigit(static_cast<unsigned char>(name.front())) == 0 || !isOwn(process))
            continue;
        const std::string group = firstLine(process + "/cgroup");
        ProcessFacts facts{.name = firstLine(process + "/comm"),
                           .executable = executableOf(process),
                           .words = splitAt(beginning(process + "/cmdline"), '\0'),
                           .unit = group.substr(group.rfind('/') + 1)};
        // A non-dumpable process hides its executable too; its first argument has to do.
        if (facts.executable.empty() && !facts.words.empty())
            facts.executable = facts.words.front();
        processes.push_back(std::move(facts));
    }
    return processes;
}

std::vector<std::string> runningProcesses() {
    std::vector<std::string> names;
    for (const ProcessFacts& process : ownProcesses()) {
        for (std::string& name : namesOf(process))
            names.push_back(std::move(name));
    }
    return names;
}

}  // namespace ulvak::platform

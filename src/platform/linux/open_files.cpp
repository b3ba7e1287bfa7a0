#include <algorithm>
#include <cctype>
#include <fstream>
#include <string_view>

#include "platform/files.h"
#include "platform/temporary_items.h"

namespace ulvak::platform {
namespace {

bool isProcess(const std::string& name) {
    return std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// Adds the files that a process has mapped, which it may have closed since. A line of the list ends in the
/// path.
void addMapped(const std::string& process, const std::string& prefix, std::vector<std::string>& found) {
    std::ifstream list(process + "/maps");
    for (std::string line; std::getline(list, line);) {
        if (const std::size_t at = line.find(" " + prefix); at != std::string::npos)
            found.push_back(line.substr(at + 1));
    }
}

}  // namespace

std::vector<std::string> openBelow(const std::string& folder) {
    const std::string prefix = folder.ends_with('/') ? folder : folder + "/";
    std::vector<std::string> found;
    const auto add = [&](const std::string& link) {
        if (const auto target = linkTarget(link); target && target->starts_with(prefix))
            found.push_back(*target);
    };
    for (const std::string& name : listNames("/proc")) {
        if (!isProcess(name))
            continue;
        const std::string process = "/proc/" + name;
        for (const char* link : {"/cwd", "/exe", "/root"})
            add(process + link);
        const std::string handles = process + "/fd/";
        for (const std::string& handle : listNames(handles))
            add(handles + handle);
        addMapped(process, prefix, found);
    }
    return found;
}

}  // namespace ulvak::platform

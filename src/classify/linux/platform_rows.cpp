#include "classify/platform_rows.h"

#include <string>
#include <vector>

#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {

std::vector<Rows> platformRows() {
    return {desktopRows(), browserRows(),  communicationRows(), gameRows(),  mediaRows(), machineRows(),
            systemRows(),  languageRows(), editorRows(),        buildRows(), modelRows(), scienceRows()};
}

std::vector<std::string> systemFolders() {
    return {"/var/cache",       "/var/log",       "/var/lib/docker",  "/var/lib/containers",
            "/var/lib/flatpak", "/var/lib/snapd", "/var/lib/libvirt", "/var/lib/systemd/coredump",
            "/var/tmp",         "/opt",           "/usr/local",       "/home/linuxbrew"};
}

}  // namespace ulvak::RuleBook

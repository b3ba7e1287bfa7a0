#include "classify/platform_rows.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {

std::vector<Row> platformRows() {
    std::vector<Row> rows;
    for (const Rows subject :
         {desktopRows(), browserRows(), communicationRows(), gameRows(), mediaRows(), machineRows(),
          systemRows(), languageRows(), editorRows(), buildRows(), modelRows(), scienceRows()})
        std::ranges::copy(subject, std::back_inserter(rows));
    return rows;
}

std::vector<std::string> systemFolders() {
    return {"/var/cache",       "/var/log",       "/var/lib/docker",  "/var/lib/containers",
            "/var/lib/flatpak", "/var/lib/snapd", "/var/lib/libvirt", "/var/lib/systemd/coredump",
            "/var/tmp",         "/opt",           "/usr/local",       "/home/linuxbrew"};
}

}  // namespace ulvak::RuleBook

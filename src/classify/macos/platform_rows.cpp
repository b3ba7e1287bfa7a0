#include "classify/platform_rows.h"

#include <string>
#include <vector>

namespace ulvak::RuleBook {

/// The common rows were written for this system.
std::vector<Rows> platformRows() {
    return {};
}

/// They are among the roots of every scan.
std::vector<std::string> systemFolders() {
    return {};
}

}  // namespace ulvak::RuleBook

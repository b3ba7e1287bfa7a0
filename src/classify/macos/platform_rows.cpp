#include "classify/platform_rows.h"

namespace ulvak::RuleBook {

/// The common rows were written for this system.
std::vector<Row> platformRows() {
    return {};
}

}  // namespace ulvak::RuleBook

#include "classify/platform_rows.h"

#include <algorithm>
#include <iterator>

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

}  // namespace ulvak::RuleBook

#pragma once

#include "classify/rule_row.h"

/// What the program knows of Linux, by subject. The order does not matter: the most specific row wins.
namespace ulvak::RuleBook {

[[nodiscard]] Rows desktopRows();
[[nodiscard]] Rows browserRows();
[[nodiscard]] Rows communicationRows();
[[nodiscard]] Rows gameRows();
[[nodiscard]] Rows mediaRows();
[[nodiscard]] Rows machineRows();
[[nodiscard]] Rows systemRows();
[[nodiscard]] Rows languageRows();
[[nodiscard]] Rows editorRows();
[[nodiscard]] Rows buildRows();
[[nodiscard]] Rows modelRows();
[[nodiscard]] Rows scienceRows();

}  // namespace ulvak::RuleBook

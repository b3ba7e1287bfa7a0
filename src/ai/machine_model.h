#pragma once

#include "platform/language_model.h"

namespace ulvak {

/// The model to ask on this machine: the system's own if it has one, else a server that the user runs. Costs
/// nothing until first used.
[[nodiscard]] const platform::LanguageModel& machineModel();

}  // namespace ulvak

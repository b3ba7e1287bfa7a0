#pragma once

#include "platform/language_model.h"

namespace ulvak {

/// The model that is asked on this machine: the system's own where it has one, or a server that the user
/// runs. Costs nothing until it is asked something.
[[nodiscard]] const platform::LanguageModel& machineModel();

}  // namespace ulvak

#pragma once

#include "platform/language_model.h"

namespace ulvak::platform {

/// The system's own. Costs nothing until it is asked something.
[[nodiscard]] const LanguageModel& systemLanguageModel();

}  // namespace ulvak::platform

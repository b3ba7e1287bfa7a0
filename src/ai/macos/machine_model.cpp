#include "ai/machine_model.h"

namespace ulvak {

const platform::LanguageModel& machineModel() {
    return *platform::systemLanguageModel();
}

}  // namespace ulvak

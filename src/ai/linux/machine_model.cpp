#include "ai/machine_model.h"

#include "ai/server/local_model.h"

namespace ulvak {

const platform::LanguageModel& machineModel() {
    static const LocalModel model(LocalModelSettings::fromEnvironment());
    return model;
}

}  // namespace ulvak

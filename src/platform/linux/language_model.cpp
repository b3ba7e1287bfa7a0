#include "platform/language_model.h"

#include "platform/linux/local_model.h"

namespace ulvak::platform {

const LanguageModel& systemLanguageModel() {
    static const LocalModel model(LocalModelSettings::fromEnvironment());
    return model;
}

}  // namespace ulvak::platform

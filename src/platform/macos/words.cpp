#include "platform/words.h"

#include "platform/macos/mac_words.h"

namespace ulvak::platform {

const Words& words() {
    return macWords;
}

}  // namespace ulvak::platform

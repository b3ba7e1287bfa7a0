#pragma once

#include "platform/words.h"

namespace ulvak {

using platform::Words;
using platform::words;

}  // namespace ulvak

#include "platform/color_scheme.h"

namespace ulvak::platform {

// The toolkit's palette follows the system's appearance by itself.
class ColorSchemeWatch::Desktop {};

ColorSchemeWatch::ColorSchemeWatch(Changed /*changed*/) {}

ColorSchemeWatch::~ColorSchemeWatch() = default;

}  // namespace ulvak::platform

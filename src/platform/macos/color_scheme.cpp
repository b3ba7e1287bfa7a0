#include "platform/color_scheme.h"

namespace ulvak::platform {

// The toolkit's palette follows the system's appearance by itself.
class ColorSchemeWatch::Desktop {};

// NOLINTNEXTLINE(performance-unnecessary-value-param): another system keeps it
ColorSchemeWatch::ColorSchemeWatch(Changed /*changed*/) {}

ColorSchemeWatch::~ColorSchemeWatch() = default;

}  // namespace ulvak::platform

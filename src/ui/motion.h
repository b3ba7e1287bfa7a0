#pragma once

#include <QStringList>

namespace ulvak {

/// Whether the window's transitions are to take no time: "--reduced-motion" among the arguments, or
/// ULVAK_REDUCED_MOTION set to anything but 0. The toolkit cannot say what the desktop wishes.
[[nodiscard]] bool wantsReducedMotion(const QStringList& arguments);

}  // namespace ulvak

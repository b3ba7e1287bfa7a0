#pragma once

#include <QStringList>

namespace ulvak {

/// Whether the window's transitions should take no time: "--reduced-motion" is among the arguments, or
/// ULVAK_REDUCED_MOTION is set to anything but 0. Qt cannot report the desktop's preference.
[[nodiscard]] bool wantsReducedMotion(const QStringList& arguments);

}  // namespace ulvak

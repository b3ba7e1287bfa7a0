#include "app/desktop_scheme.h"

#include <QTimer>

namespace ulvak {

DesktopScheme::DesktopScheme()
    : watch_([this](Scheme scheme) {
          current_ = scheme;
          QTimer::singleShot(0, this, &DesktopScheme::changed);  // on this object's thread
      }) {}

}  // namespace ulvak

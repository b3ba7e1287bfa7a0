#include "app/desktop_scheme.h"

namespace ulvak {

DesktopScheme::DesktopScheme()
    : watch_([this](Scheme scheme) {
          current_ = scheme;
          QMetaObject::invokeMethod(this, &DesktopScheme::changed, Qt::QueuedConnection);
      }) {}

}  // namespace ulvak

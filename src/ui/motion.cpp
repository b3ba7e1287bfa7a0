#include "ui/motion.h"

#include <QByteArray>
#include <QtGlobal>

namespace ulvak {

bool wantsReducedMotion(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--reduced-motion")))
        return true;
    const QByteArray wish = qgetenv("ULVAK_REDUCED_MOTION");
    return !wish.isEmpty() && wish != "0";
}

}  // namespace ulvak

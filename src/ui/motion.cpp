#include "ui/motion.h"

#include <QByteArray>
#include <QtGlobal>

#include "cli/command_line.h"

namespace ulvak {

bool wantsReducedMotion(const QStringList& arguments) {
    if (CommandLine::parse(arguments, &QString::toStdString).reducedMotion)
        return true;
    const QByteArray wish = qgetenv("ULVAK_REDUCED_MOTION");
    return !wish.isEmpty() && wish != "0";
}

}  // namespace ulvak

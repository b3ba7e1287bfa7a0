#pragma once

#include <QObject>
#include <QString>

#include "app/desktop_scheme.h"

class QWindow;

namespace ulvak {

/// Whether the desktop prefers light or dark. Asks Qt first, if it is new enough to know, then the desktop
/// itself. Never blocks: if made before the window, it usually has the answer by the time the window shows.
///
/// Threads: the UI thread only.
class DesktopAppearance : public QObject {
    Q_OBJECT
public:
    DesktopAppearance();

    /// "light", "dark", or empty if unknown, in which case only the palette is left to go by.
    [[nodiscard]] QString wish() const;
    /// Keeps the window's "desktopAppearance" equal to `wish` while both live.
    void follow(QWindow& window);

signals:
    void changed();

private:
    DesktopScheme desktop_;
};

}  // namespace ulvak

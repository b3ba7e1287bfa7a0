#pragma once

#include <QObject>
#include <QString>

#include "app/desktop_scheme.h"

class QWindow;

namespace ulvak {

/// Whether the desktop asks for light or dark. The toolkit is asked first, where it is new enough to know;
/// then the desktop itself. Nothing waits for either: made before the window is, it has mostly been answered
/// when that shows.
///
/// Threads: the UI thread only.
class DesktopAppearance : public QObject {
    Q_OBJECT
public:
    DesktopAppearance();

    /// "light", "dark", or empty where nobody says, and the palette is all there is to go by.
    [[nodiscard]] QString wish() const;
    /// Keeps the window's "desktopAppearance" at `wish`, while both live.
    void follow(QWindow& window);

signals:
    void changed();

private:
    DesktopScheme desktop_;
};

}  // namespace ulvak

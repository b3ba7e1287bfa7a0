#pragma once

#include <QObject>
#include <atomic>

#include "platform/desktop.h"

namespace ulvak {

/// What the desktop itself says of light and dark. Nothing waits for it.
///
/// Threads: the UI thread only.
class DesktopScheme : public QObject {
    Q_OBJECT
public:
    using Scheme = platform::ColorScheme;

    DesktopScheme();

    /// `unsaid` until it has answered, and where it never does.
    [[nodiscard]] Scheme current() const { return current_; }

signals:
    void changed();

private:
    std::atomic<Scheme> current_ = Scheme::unsaid;
    platform::ColorSchemeWatch watch_;  ///< last: it uses the others, from its own thread
};

}  // namespace ulvak

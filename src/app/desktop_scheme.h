#pragma once

#include <QObject>
#include <atomic>

#include "platform/desktop.h"

namespace ulvak {

/// The desktop's own light or dark preference. Never blocks.
///
/// Threads: the UI thread only.
class DesktopScheme : public QObject {
    Q_OBJECT
public:
    using Scheme = platform::ColorScheme;

    DesktopScheme();

    /// `unsaid` until the desktop answers; stays so if it never does.
    [[nodiscard]] Scheme current() const { return current_; }

signals:
    void changed();

private:
    std::atomic<Scheme> current_ = Scheme::unsaid;
    platform::ColorSchemeWatch watch_;  ///< last: its thread uses the others
};

}  // namespace ulvak

#pragma once

namespace ulvak::platform {

/// For as long as one lives, what this thread reads renews no access date and fetches nothing that lives
/// elsewhere, where that is asked for thread by thread and not file by file. Every call of the platform that
/// looks at what the user keeps has one of its own; one around many of them saves each the asking. They nest.
class QuietAccess {
public:
    QuietAccess();
    ~QuietAccess();  // NOLINT(performance-trivially-destructible): not on every system
    QuietAccess(const QuietAccess&) = delete;
    QuietAccess& operator=(const QuietAccess&) = delete;
};

}  // namespace ulvak::platform

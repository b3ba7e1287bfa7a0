#pragma once

#include <locale>
#include <optional>
#include <string>

#include "support/environment.h"
#include "support/temp_tree.h"

namespace ulvak::test {

/// Switches the whole process to Turkish, as on a Turkish user's machine: the environment, the C locale and
/// the C++ locale. There, "i" capitalises to "İ", and "I" is the capital of "ı". Restored on destruction.
class TurkishLocale {
public:
    /// Builds the locale if the system does not have it.
    TurkishLocale();
    ~TurkishLocale();
    TurkishLocale(const TurkishLocale&) = delete;
    TurkishLocale& operator=(const TurkishLocale&) = delete;

    /// Why the process is not in Turkish; empty if it is.
    [[nodiscard]] std::optional<std::string> whyNot() const;

private:
    TempTree built_;
    ScopedEnvironment environment_;
    std::string before_;
    std::locale globalBefore_;
    bool isInForce_ = false;
};

}  // namespace ulvak::test

#pragma once

#include <locale>
#include <optional>
#include <string>

#include "support/environment.h"
#include "support/temp_tree.h"

namespace ulvak::test {

/// Puts the whole process into Turkish, as a Turkish user's program starts: the environment, the C locale
/// and the C++ locale. There the capital of "i" is "İ", and "I" is that of "ı". Ends with the object.
class TurkishLocale {
public:
    /// Builds the locale where the system has not installed it.
    TurkishLocale();
    ~TurkishLocale();
    TurkishLocale(const TurkishLocale&) = delete;
    TurkishLocale& operator=(const TurkishLocale&) = delete;

    /// Why the process is not in Turkish; nothing when it is.
    [[nodiscard]] std::optional<std::string> whyNot() const;

private:
    TempTree built_;
    ScopedEnvironment environment_;
    std::string before_;
    std::locale globalBefore_;
    bool isInForce_ = false;
};

}  // namespace ulvak::test

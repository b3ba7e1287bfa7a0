#include "support/turkish_locale.h"

#include <clocale>
#include <cstdlib>
#include <cwctype>

// Suppresses a C library leak: it loses its list of LOCPATH folders each time it opens a locale from there.
extern "C" const char* __lsan_default_suppressions();  // NOLINT: the name the sanitizer looks for
extern "C" const char* __lsan_default_suppressions() {
    return "leak:argz_add_sep\n";
}  // NOLINT

namespace ulvak::test {
namespace {

constexpr const char* name = "tr_TR.UTF-8";

}  // namespace

TurkishLocale::TurkishLocale()
    : environment_({{"LC_ALL", name}, {"LANG", name}, {"LANGUAGE", "tr"}, {"LOCPATH", std::nullopt}}),
      before_(std::setlocale(LC_ALL, nullptr)) {
    if (std::setlocale(LC_ALL, name) == nullptr) {
        const std::string command =
            "localedef -i tr_TR -f UTF-8 '" + built_.path(name) + "' >'" + built_.path("log") + "' 2>&1";
        if (std::system(command.c_str()) != 0)
            return;
        ::setenv("LOCPATH", built_.path().c_str(), 1);
        if (std::setlocale(LC_ALL, name) == nullptr)
            return;
    }
    globalBefore_ = std::locale::global(std::locale(name));
    isInForce_ = std::towlower(L'I') != L'i';
}

TurkishLocale::~TurkishLocale() {
    std::locale::global(globalBefore_);
    std::setlocale(LC_ALL, before_.c_str());
}

std::optional<std::string> TurkishLocale::whyNot() const {
    if (isInForce_)
        return std::nullopt;
    return "the locale tr_TR.UTF-8 is not installed and cannot be built";
}

}  // namespace ulvak::test

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "clean/guard_rails.h"
#include "clean/plain_rule.h"

// Compares the guard rails with a simpler statement of the same rules. The input is a byte that selects the
// user, then the path.

namespace {

using ulvak::GuardRails;
using ulvak::UserFolders;
using ulvak::test::PlainRule;

const std::array<UserFolders, 4> users = {{
    {.home = "/Users/a", .temp = "/var/folders/a/T", .cache = "/var/folders/a/C"},
    {.home = "/home/a", .temp = "/tmp", .cache = "/C"},
    {.home = "/home/a", .temp = "/home/a/tmp", .cache = "/home/a/C"},
    {.home = "/", .temp = "/tmp", .cache = "/C"},
}};

void check(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const UserFolders& user = users[data[0] % users.size()];
    const std::string path(reinterpret_cast<const char*>(data + 1), size - 1);
    const GuardRails rails(user);
    const PlainRule rule(user);
    const std::string item = PlainRule::tidy(path);
    const auto place = rails.place(path);

    check(rails.isAllowed(path) == rule.allows(path));
    check(place.has_value() == rails.isAllowed(path));
    if (!place)
        return 0;
    check(place->path() == item);
    check(!place->relative.empty() && !place->name().empty());
    check(place->name().find('/') == std::string_view::npos && place->name() != "." && place->name() != "..");
    check(rails.place(place->path()) == place);
    return 0;
}

#pragma once

#include <algorithm>
#include <cstdlib>

namespace ulvak::test {

/// How many rounds a race runs that usually runs `rounds`: a quarter under a sanitizer, where each takes
/// several times as long, and N times as many with ULVAK_RACES=N, for a long run by hand. With the
/// guards of the removal taken out, one at a time, several races noticed each within 150 rounds, and the
/// slowest needed 952.
[[nodiscard]] inline int raceRounds(int rounds) {
#ifdef ULVAK_SANITIZED
    rounds /= 4;
#endif
    const char* times = std::getenv("ULVAK_RACES");
    return rounds * std::max(1, times != nullptr ? std::atoi(times) : 1);
}

}  // namespace ulvak::test

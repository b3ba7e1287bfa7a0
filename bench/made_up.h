#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/finding.h"

namespace ulvak {

/// A finding as full as one gets, of one level after the other.
Finding madeUp(std::size_t number, std::string_view folder);

/// These in a random order that is the same for the same seed.
std::vector<std::size_t> shuffled(std::vector<std::size_t> numbers, unsigned seed);

}  // namespace ulvak

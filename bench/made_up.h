#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/finding.h"

namespace ulvak {

/// A finding with all fields filled; levels rotate with `number`.
Finding madeUp(std::size_t number, std::string_view folder);

/// Shuffles deterministically: the same seed gives the same order.
std::vector<std::size_t> shuffled(std::vector<std::size_t> numbers, unsigned seed);

}  // namespace ulvak

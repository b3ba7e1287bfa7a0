#pragma once

#include <algorithm>
#include <functional>
#include <vector>

namespace ulvak {

/// Stable sort by `size`, descending.
template <typename T>
void sortLargestFirst(std::vector<T>& items) {
    std::ranges::stable_sort(items, std::ranges::greater(), &T::size);
}

}  // namespace ulvak

#pragma once

#include <algorithm>
#include <functional>
#include <vector>

namespace ulvak {

/// Sorts what has a `size`; equal sizes keep their order.
template <typename T>
void sortLargestFirst(std::vector<T>& items) {
    std::ranges::stable_sort(items, std::ranges::greater(), &T::size);
}

}  // namespace ulvak

#pragma once

#include <cstddef>
#include <functional>

namespace ulvak {

/// Folds the hash of `value` into `seed`. Order-dependent.
template <typename T>
void hashCombine(std::size_t& seed, const T& value) {
    seed ^= std::hash<T>{}(value) + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U);
}

}  // namespace ulvak

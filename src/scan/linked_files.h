#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scan/linked_file.h"

namespace ulvak {

/// The files of a folder and all below it that have further names outside it, as far as is known: what the
/// folders around have to know so as to count each once. A file leaves when its last name has been seen.
/// Whatever the order in which names and folders come, the sums are the same.
///
/// An open-addressed table, for there may be millions; empty, as nearly always, it holds no memory.
/// Threads: none of its own, guarded by whoever shares it.
class LinkedFiles {
public:
    /// What a change means for the sums around it, in bytes.
    struct Effect {
        std::int64_t repeated = 0;   ///< counted twice until now
        std::int64_t completed = 0;  ///< of files whose last name has been seen

        Effect& operator+=(const Effect& other) {
            repeated += other.repeated;
            completed += other.completed;
            return *this;
        }
    };

    /// One name, or what another place knows of a file; no name is added twice.
    Effect add(const LinkedFile& file);
    /// All that another place knows, which is empty then. The smaller goes into the larger.
    Effect absorb(LinkedFiles& other);

    /// Keeps a small buffer for the next use.
    void clear();
    [[nodiscard]] bool isEmpty() const { return count_ == 0; }
    [[nodiscard]] std::size_t size() const { return count_; }
    /// Of all files in it.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

private:
    [[nodiscard]] std::size_t homeOf(const LinkedFile& file) const;
    [[nodiscard]] std::size_t after(std::size_t slot) const {
        return slot + 1 == slots_.size() ? 0 : slot + 1;
    }
    void makeRoom();
    void erase(std::size_t slot);

    std::vector<LinkedFile> slots_;
    std::size_t count_ = 0;
    std::int64_t bytes_ = 0;
};

}  // namespace ulvak

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scan/linked_file.h"

namespace ulvak {

/// The files below a folder that still have hard links outside it, as far as is known. The folders above need
/// them to count each file once. A file is dropped when its last link has been seen. The sums do not depend
/// on the order in which links and folders arrive.
///
/// An open-addressed table, since there may be millions. Allocates nothing while empty, which is nearly
/// always. Not thread-safe; guarded by its owner.
class LinkedFiles {
public:
    /// How a change affects the sums of the enclosing folder, in bytes.
    struct Effect {
        std::int64_t repeated = 0;   ///< counted twice so far
        std::int64_t completed = 0;  ///< of files whose last link has now been seen

        Effect& operator+=(const Effect& other) {
            repeated += other.repeated;
            completed += other.completed;
            return *this;
        }
    };

    /// Adds one link, or what another folder knows of a file. No link may be added twice.
    Effect add(const LinkedFile& file);
    /// Takes over everything in `other`, leaving it empty. The smaller table is merged into the larger.
    Effect absorb(LinkedFiles& other);

    /// Keeps a small buffer for reuse.
    void clear();
    [[nodiscard]] bool isEmpty() const { return count_ == 0; }
    [[nodiscard]] std::size_t size() const { return count_; }
    /// The total size of all files in the table.
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

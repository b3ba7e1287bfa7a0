#include "scan/linked_files.h"

#include <algorithm>
#include <utility>

#include "core/checked_add.h"

namespace ulvak {
namespace {

constexpr std::size_t minSlots = 8;
constexpr std::size_t maxKeptSlots = 2048;

std::uint16_t addedNames(std::uint16_t one, std::uint16_t other) {
    return static_cast<std::uint16_t>(std::min<unsigned>(unsigned{one} + other, LinkedFile::maxNames));
}

}  // namespace

/// Inode numbers are handed out in sequence; a multiplication spreads them over the table.
std::size_t LinkedFiles::homeOf(const LinkedFile& file) const {
    const std::uint64_t hash = (file.number + (std::uint64_t{file.volume} << 40U)) * 0x9e3779b97f4a7c15U;
    return static_cast<std::size_t>(((hash >> 32U) * slots_.size()) >> 32U);
}

LinkedFiles::Effect LinkedFiles::add(const LinkedFile& file) {
    if (file.isComplete())
        return {.repeated = 0, .completed = file.size};
    makeRoom();
    std::size_t slot = homeOf(file);
    while (slots_[slot].seen > 0 && !slots_[slot].isSameAs(file))
        slot = after(slot);
    LinkedFile& known = slots_[slot];
    if (known.seen == 0) {
        known = file;
        ++count_;
        addChecked(bytes_, file.size);
        return {};
    }
    // If the file grew between two looks, the larger size counts.
    Effect effect{.repeated = std::min(known.size, file.size)};
    const std::int64_t larger = std::max(known.size, file.size);
    addChecked(bytes_, larger - known.size);
    known.size = larger;
    known.names = std::max(known.names, file.names);
    known.seen = addedNames(known.seen, file.seen);
    if (known.isComplete()) {
        effect.completed = larger;
        erase(slot);
    }
    return effect;
}

LinkedFiles::Effect LinkedFiles::absorb(LinkedFiles& other) {
    if (other.count_ > count_)
        std::swap(*this, other);
    Effect effect;
    if (other.count_ > 0) {
        for (const LinkedFile& file : other.slots_) {
            if (file.seen > 0)
                effect += add(file);
        }
    }
    other.clear();
    return effect;
}

void LinkedFiles::clear() {
    if (count_ > 0 && slots_.size() <= maxKeptSlots)
        std::ranges::fill(slots_, LinkedFile());
    else if (slots_.size() > maxKeptSlots)
        std::vector<LinkedFile>().swap(slots_);
    count_ = 0;
    bytes_ = 0;
}

/// Load factor 7/8, growth by a quarter: memory matters more than speed here.
void LinkedFiles::makeRoom() {
    if ((count_ + 1) * 8 <= slots_.size() * 7)
        return;
    LinkedFiles larger;
    larger.slots_.resize(std::max(minSlots, slots_.size() + slots_.size() / 4));
    for (const LinkedFile& file : slots_) {
        if (file.seen == 0)
            continue;
        std::size_t slot = larger.homeOf(file);
        while (larger.slots_[slot].seen > 0)
            slot = larger.after(slot);
        larger.slots_[slot] = file;
    }
    slots_.swap(larger.slots_);
}

/// Backward-shift deletion: moves later entries up, so that no probe ends too early.
void LinkedFiles::erase(std::size_t slot) {
    --count_;
    bytes_ -= slots_[slot].size;
    std::size_t hole = slot;
    for (std::size_t next = after(hole); slots_[next].seen > 0; next = after(next)) {
        const std::size_t distance = (next + slots_.size() - homeOf(slots_[next])) % slots_.size();
        const std::size_t toHole = (next + slots_.size() - hole) % slots_.size();
        if (distance >= toHole) {
            slots_[hole] = slots_[next];
            hole = next;
        }
    }
    slots_[hole] = {};
}

}  // namespace ulvak

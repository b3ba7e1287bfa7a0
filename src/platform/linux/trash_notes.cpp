#include "platform/linux/trash_notes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstddef>
#include <iterator>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

namespace ulvak::platform {
namespace {

/// Waits for several files at once, because a file system that keeps a journal ends one transaction for all
/// that wait: with each awaited after the other, notes take three times as long. Each with whether it is on
/// the disk.
std::vector<char> flushed(std::span<const TrashNote* const> notes) {
    constexpr std::size_t mostThreads = 8;
    constexpr std::size_t notesForOne = 4;
    for (const TrashNote* note : notes)
        note->startFlush();
    std::vector<char> results(notes.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t index = next++; index < notes.size(); index = next++)
            results[index] = notes[index]->flushFile() ? 0 : 1;
    };
    std::vector<std::jthread> threads;
    const auto start = [&] {
        try {
            while (threads.size() + 1 < std::min(mostThreads, notes.size() / notesForOne))
                threads.emplace_back(work);
        } catch (const std::system_error&) {
            return;  // Dropped by design: those that are there do it.
        }
    };
    start();
    work();
    threads.clear();
    return results;
}

}  // namespace

std::string freeTrashName(const OpenTrash& trash, const std::string& item, std::size_t longest) {
    const auto exists = [](const Directory& folder, const std::string& name) {
        return ::faccessat(folder.handle(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    };
    const int number = freeNumber([&](int candidate) {
        const std::string name = trashName(item, candidate, longest);
        return exists(trash.notes, name + trashLayout().noteSuffix) || exists(trash.items, name);
    });
    return trashName(item, number, longest);
}

void TrashNotes::Notes::add(const Directory& parent, const std::string& name, const std::string& path) {
    if (path.size() >= PATH_MAX || waiting_.size() >= most)
        return;
    if (!std::exchange(isHomeKnown_, true)) {
        if (auto home = homeTrash())
            home_ = std::make_shared<const OpenTrash>(std::move(*home));
    }
    if (!home_ || !isOnSameVolume(parent, home_->items))
        return;
    std::string free = freeTrashName(*home_, name);
    auto note =
        TrashNote::draft(home_->notes, free + trashLayout().noteSuffix, noteText(path, std::time(nullptr)));
    if (note)
        waiting_.try_emplace(path,
                             WaitingNote{.trash = home_, .name = std::move(free), .note = std::move(*note)});
}

/// Each note holds a handle. A process that has few may need the last for moving the items, and for what it
/// does besides.
void TrashNotes::Notes::leaveHandles() {
    constexpr std::size_t enough = 32;
    std::vector<int> spare;
    while (!waiting_.empty() && spare.size() < enough) {
        const int handle = waiting_.begin()->second.note.duplicateHandle();
        if (handle >= 0)
            spare.push_back(handle);
        else
            waiting_.erase(std::prev(waiting_.end()));
    }
    for (const int handle : spare)
        ::close(handle);
}

void TrashNotes::Notes::flush() {
    leaveHandles();
    std::vector<const TrashNote*> notes;
    for (const auto& [path, waiting] : waiting_)
        notes.push_back(&waiting.note);
    const std::vector<char> results = flushed(notes);
    for (auto place = waiting_.begin(); const char isFlushed : results)
        place = isFlushed != 0 ? std::next(place) : waiting_.erase(place);
    if (!waiting_.empty() && waiting_.begin()->second.note.flushFolder())
        waiting_.clear();
    isFlushed_ = true;
}

std::optional<WaitingNote> TrashNotes::Notes::take(const std::string& path) {
    auto taken = isFlushed_ ? waiting_.extract(path) : decltype(waiting_)::node_type();
    return taken.empty() ? std::nullopt : std::optional(std::move(taken.mapped()));
}

TrashNotes::TrashNotes() : notes_(std::make_unique<Notes>()) {}
TrashNotes::~TrashNotes() = default;

void TrashNotes::add(const Directory& parent, const std::string& name, const std::string& path) {
    notes_->add(parent, name, path);
}

void TrashNotes::flush() {
    notes_->flush();
}

}  // namespace ulvak::platform

#include "platform/linux/trash_note.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <iterator>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/system.h"
#include "platform/removal.h"

namespace ulvak::platform {
namespace {

using Clock = std::chrono::steady_clock;
using posix::lastError;

/// At most the first `maxSize` bytes of `text`, cut between UTF-8 characters.
std::string_view cut(std::string_view text, std::size_t maxSize) {
    if (text.size() <= maxSize)
        return text;
    constexpr std::size_t maxCharacterBytes = 4;
    const auto continues = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    std::size_t end = maxSize;
    while (end > 0 && continues(end) && maxSize - end < maxCharacterBytes)
        --end;
    return text.substr(0, maxSize - end < maxCharacterBytes && end > 0 ? end : maxSize);
}

/// Flushes several files concurrently, because a journaling file system ends one transaction for all that
/// wait; one after the other takes three times as long. Returns, for each, whether it is on the disk.
std::vector<char> flushed(std::span<const TrashNote* const> notes) {
    constexpr std::size_t maxThreads = 8;
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
            while (threads.size() + 1 < std::min(maxThreads, notes.size() / notesForOne))
                threads.emplace_back(work);
        } catch (const std::system_error&) {
            return;  // Dropped by design: the threads already running do the work.
        }
    };
    start();
    work();
    threads.clear();
    return results;
}

}  // namespace

std::string trashName(std::string_view name, int number, std::size_t maxLength) {
    const std::size_t room = maxLength - trashLayout().noteSuffix.size();
    if (number == 1)
        return std::string(cut(name, room));
    constexpr std::size_t maxExtensionLength = 16;
    const std::size_t dot = name.rfind('.');
    const bool hasExtension =
        dot != std::string_view::npos && dot > 0 && name.size() - dot <= maxExtensionLength;
    const std::string_view extension = hasExtension ? name.substr(dot) : "";
    const std::string end = "." + std::to_string(number) + std::string(extension);
    return std::string(cut(name.substr(0, name.size() - extension.size()), room - end.size())) + end;
}

int freeNumber(const std::function<bool(int)>& isTaken) {
    if (!isTaken(1))
        return 1;
    constexpr int last = 1 << 30;
    int taken = 1;
    int free = 2;
    while (free < last && isTaken(free)) {
        taken = free;
        free *= 2;
    }
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isTaken(middle) ? taken : free) = middle;
    }
    return free;
}

std::string percentEncoded(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string text;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (plain.find(character) != std::string_view::npos)
            text += character;
        else
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
    }
    return text;
}

std::string noteText(std::string_view path, std::time_t when) {
    std::tm local{};
    std::array<char, 32> date{};
    if (::localtime_r(&when, &local) != nullptr)
        (void)std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + date.data() + "\n";
}

std::expected<TrashNote, std::error_code> TrashNote::draft(const Directory& notes, std::string name,
                                                           std::string_view text) {
    FileDescriptor file(
        ::openat(notes.handle(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return std::unexpected(lastError());
    TrashNote note(notes, std::move(name), std::move(file));
    if (const auto error = note.fill(text))
        return std::unexpected(error);
    return note;
}

std::expected<TrashNote, std::error_code> TrashNote::write(const Directory& notes, std::string name,
                                                           std::string_view text) {
    auto note = draft(notes, std::move(name), text);
    const auto error = note ? note->flush() : std::error_code();
    if (error)
        return std::unexpected(error);
    return note;
}

std::error_code TrashNote::fill(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(file_.get(), text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return lastError();
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return {};
}

/// The note must be on the disk before its item moves. Flushing the folder, which most file systems do along
/// with a new file, doubles the time, so in a long series it is limited to a small share of the time.
std::error_code TrashNote::flush() const {
    static std::atomic<Clock::duration::rep> nextFolderFlush = 0;
    if (const auto error = flushFile())
        return error;
    const auto start = Clock::now();
    if (start.time_since_epoch().count() < nextFolderFlush.load())
        return {};
    if (const auto error = flushFolder())
        return error;
    constexpr int share = 10;
    const auto end = Clock::now();
    nextFolderFlush = (end + share * (end - start)).time_since_epoch().count();
    return {};
}

void TrashNote::startFlush() const {
    // Dropped by design: what this does not start, the flush does.
    (void)::sync_file_range(file_.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

std::error_code TrashNote::flushFile() const {
    return posix::flushToDisk(file_.get()) == 0 ? std::error_code() : lastError();
}

std::error_code TrashNote::flushFolder() const {
    return posix::flushToDisk(notes_->handle()) == 0 || errno == EINVAL ? std::error_code() : lastError();
}

TrashNote::~TrashNote() {
    // After another program has emptied the Trash, the name may belong to another item's note.
    if (!name_.empty() && isThere())
        ::unlinkat(notes_->handle(), name_.c_str(), 0);
}

TrashNote::TrashNote(TrashNote&& other) noexcept
    : notes_(other.notes_), name_(std::exchange(other.name_, {})), file_(std::move(other.file_)) {}

FileDescriptor TrashNote::duplicate() const {
    return FileDescriptor(::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
}

bool TrashNote::isThere() const {
    const auto own = posix::identityAt(file_.get(), "");
    return own && own == entryIdentity(*notes_, name_);
}

std::string freeTrashName(const OpenTrash& trash, const std::string& item, std::size_t maxLength) {
    const auto exists = [](const Directory& folder, const std::string& name) {
        return ::faccessat(folder.handle(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    };
    const int number = freeNumber([&](int candidate) {
        const std::string name = trashName(item, candidate, maxLength);
        return exists(trash.notes, name + trashLayout().noteSuffix) || exists(trash.items, name);
    });
    return trashName(item, number, maxLength);
}

void TrashNotes::Notes::add(const Directory& parent, const std::string& name, const std::string& path) {
    if (path.size() >= PATH_MAX || waiting_.size() >= maxNotes)
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

/// Each note holds a handle. If handles are scarce, drops notes so that enough are left to move the items.
void TrashNotes::Notes::leaveHandles() {
    constexpr std::size_t enough = 32;
    std::vector<FileDescriptor> spare;
    while (!waiting_.empty() && spare.size() < enough) {
        FileDescriptor descriptor = waiting_.begin()->second.note.duplicate();
        if (descriptor.isOpen())
            spare.push_back(std::move(descriptor));
        else
            waiting_.erase(std::prev(waiting_.end()));
    }
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

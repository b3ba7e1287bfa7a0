#include "platform/trash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/linux/trash_calls.h"
#include "platform/linux/trash_folder.h"
#include "platform/linux/trash_note.h"
#include "platform/posix/system.h"
#include "platform/posix/user_folders.h"
#include "platform/user_folders.h"

namespace ulvak::platform {
namespace {

/// Attempts at finding a free name, and at reopening a Trash whose folders are just being removed.
constexpr int maxAttempts = 100;

std::error_code systemError(int number) {
    return {number, std::generic_category()};
}

/// The parent of `path`.
std::string folderOf(std::string_view path) {
    return std::string(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1)));
}

/// A name in an open folder.
struct Spot {
    const Directory& folder;
    std::string name;

    [[nodiscard]] std::optional<ItemIdentity> identity() const { return entryIdentity(folder, name); }
};

class TrashMove {
public:
    TrashMove(Spot from, const ItemIdentity& item, const std::string& path, const posix::TrashCalls& calls,
              TrashNotes::Notes* ahead)
        : from_(std::move(from)), item_(item), path_(path), calls_(calls), ahead_(ahead) {}

    std::expected<TrashedItem, FileError> run() {
        if (const int failure = judge())
            return failed(systemError(failure));
        if (auto trashed = withNoteAhead())
            return std::move(*trashed);
        for (int attempt = 1;; ++attempt) {
            auto trashed = intoHome();
            if (!trashed && trashed.error().code == std::errc::cross_device_link)
                trashed = intoVolume();
            const bool hasVanished = !trashed && trashed.error().code == std::errc::no_such_file_or_directory;
            // The item is still there, so what vanished was the Trash, just emptied along with its folders.
            if (!hasVanished || attempt == maxAttempts || from_.identity() != item_)
                return trashed;
        }
    }

private:
    using Result = std::expected<TrashedItem, FileError>;

    [[nodiscard]] std::unexpected<FileError> failed(std::error_code code, std::string detail = {}) const {
        return std::unexpected(FileError{.code = code, .path = path_, .detail = std::move(detail)});
    }

    /// Returns 0, or why the item must not be moved. From here on it is held, so that its inode number is not
    /// reused.
    int judge() {
        if (path_.size() >= PATH_MAX)
            return ENAMETOOLONG;  // nobody could restore it
        pinned_ = posix::holdAt(from_.folder.handle(), from_.name.c_str());
        if (!pinned_.isOpen())
            return errno;
        if (from_.identity() != item_ || posix::identityAt(pinned_.get(), "") != item_)
            return ESTALE;
        return from_.folder.isAt(folderOf(path_)) ? 0 : ESTALE;
    }

    /// Whether the entry at `spot` is the item, even if the move has changed its identity: some file systems
    /// copy what they move.
    [[nodiscard]] bool isItem(const Spot& spot) const {
        const auto there = spot.identity();
        return there && there == posix::identityAt(pinned_.get(), "");
    }

    /// nullopt if no note was written, or if it or the Trash has changed since.
    std::optional<Result> withNoteAhead() {
        auto waiting = ahead_ != nullptr ? ahead_->take(path_) : std::nullopt;
        if (!waiting || !waiting->note.isThere() || !isInPlace(*waiting->trash))
            return std::nullopt;
        const Spot to{.folder = waiting->trash->items, .name = waiting->name};
        int failure = rename(from_, to);
        if (failure == 0)
            failure = settle(to, waiting->note, folderOf(path_));
        if (failure == 0)
            return arrived(*waiting->trash, to, waiting->note);
        if (failure == ESTALE)
            return failed(systemError(failure));
        return std::nullopt;
    }

    [[nodiscard]] static bool isInPlace(const OpenTrash& trash) {
        return trash.items.isAt(trash.path + "/" + trashLayout().items) &&
               trash.notes.isAt(trash.path + "/" + trashLayout().notes);
    }

    [[nodiscard]] TrashedItem arrived(const OpenTrash& trash, const Spot& to, TrashNote& note) const {
        note.keep();
        return {.origin = path_,
                .location = trash.path + "/" + trashLayout().items + "/" + to.name,
                .identity = to.identity().value_or(item_)};
    }

    Result intoHome() {
        const auto trash = homeTrash();
        if (trash)
            return isOnSameVolume(from_.folder, trash->items) ? into(*trash, folderOf(path_))
                                                              : failed(systemError(EXDEV));
        const std::string home = homeDirectory();
        const auto around = Directory::open(home);
        const bool isOther = around && !isOnSameVolume(from_.folder, *around);
        return failed(isOther ? systemError(EXDEV) : trash.error(), trashDirectory(home));
    }

    Result intoVolume() {
        const auto real = resolvedPath(folderOf(path_));
        if (!real || !from_.folder.isAt(*real))
            return failed(systemError(ESTALE));
        const auto trash = volumeTrash(from_.folder, *real);
        return trash ? into(*trash, *real) : failed(trash.error());
    }

    /// `origin` is the folder's path as recorded in the note.
    Result into(const OpenTrash& trash, const std::string& origin) {
        std::string noted = trash.top.empty() ? path_ : (origin == "/" ? "" : origin) + "/" + from_.name;
        if (!trash.top.empty())
            noted = noted.substr(trash.top == "/" ? 1 : trash.top.size() + 1);
        const std::string text = noteText(noted, std::time(nullptr));
        std::size_t maxLength = maxNameLength;
        for (int attempt = 0; attempt < maxAttempts; ++attempt) {
            const Spot to{.folder = trash.items, .name = freeTrashName(trash, from_.name, maxLength)};
            auto note = TrashNote::write(trash.notes, to.name + trashLayout().noteSuffix, text);
            int failure = note ? rename(from_, to) : note.error().value();
            if (failure == ENAMETOOLONG && maxLength == maxNameLength)
                maxLength = shorterName(trash);
            else if (failure == 0)
                failure = settle(to, *note, origin);
            else if (failure != EEXIST)
                return failed(systemError(failure), note ? "" : trash.path);
            if (failure == 0)
                return arrived(trash, to, *note);
            if (failure == ESTALE)
                return failed(systemError(failure));
        }
        return failed(systemError(EEXIST), trash.path);
    }

    /// The file system's own limit, or a value below every file system's.
    static std::size_t shorterName(const OpenTrash& trash) {
        constexpr long minNameLength = 64;
        const long most = ::fpathconf(trash.notes.handle(), _PC_NAME_MAX);
        return static_cast<std::size_t>(
            most >= minNameLength && most < static_cast<long>(maxNameLength) ? most : minNameLength);
    }

    /// Moves an entry without replacing anything: EEXIST if the name is taken. Returns 0 or an errno value.
    [[nodiscard]] int rename(const Spot& from, const Spot& to) const {
        if (calls_.rename(from.folder.handle(), from.name.c_str(), to.folder.handle(), to.name.c_str(),
                          RENAME_NOREPLACE) == 0)
            return 0;
        return errno == EINVAL || errno == ENOSYS ? renameOverOwn(from, to) : errno;
    }

    /// Without an atomic no-replace rename, replaces only an empty entry that we created ourselves. `from`
    /// may be something else by then: either the kernel refuses, or it is put back like anything that arrives
    /// wrongly.
    [[nodiscard]] int renameOverOwn(const Spot& from, const Spot& to) const {
        struct stat info{};
        if (::fstatat(from.folder.handle(), from.name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
        const bool isFolder = S_ISDIR(info.st_mode);
        if (const int failure = makeEmpty(to, isFolder))
            return failure;
        const auto own = to.identity();
        if (calls_.rename(from.folder.handle(), from.name.c_str(), to.folder.handle(), to.name.c_str(), 0) ==
            0)
            return 0;
        const int failure = errno;
        if (to.identity() == own)
            ::unlinkat(to.folder.handle(), to.name.c_str(), isFolder ? AT_REMOVEDIR : 0);
        return failure;
    }

    [[nodiscard]] static int makeEmpty(const Spot& spot, bool isFolder) {
        if (isFolder)
            return ::mkdirat(spot.folder.handle(), spot.name.c_str(), 0700) == 0 ? 0 : errno;
        const FileDescriptor made(::openat(spot.folder.handle(), spot.name.c_str(),
                                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        return made.isOpen() ? 0 : errno;
    }

    /// Checks that what arrived at `to` is the item, that its note is there, and that the note is correct;
    /// otherwise puts it back (ESTALE). Returns 0 or an errno value.
    [[nodiscard]] int settle(const Spot& to, TrashNote& note, const std::string& origin) const {
        const auto isWell = [&] { return isItem(to) && note.isThere() && from_.folder.isAt(origin); };
        if (isWell())
            return 0;
        if (rename(to, from_) == 0)
            return ESTALE;
        // Somebody has put the item back in its place meanwhile: swap the two.
        if (isItem(from_) && !isItem(to) &&
            calls_.rename(to.folder.handle(), to.name.c_str(), from_.folder.handle(), from_.name.c_str(),
                          RENAME_EXCHANGE) == 0 &&
            isWell())
            return 0;
        if (!putBeside(to))
            note.keep();  // its folder is gone; only the note tells where it was
        return ESTALE;
    }

    /// Its old name is taken: puts it beside that, under a name that is easy to notice.
    [[nodiscard]] bool putBeside(const Spot& spot) const {
        for (int number = 2; number < 2 + maxAttempts; ++number) {
            const int failure = rename(spot, {.folder = from_.folder, .name = trashName(from_.name, number)});
            if (failure != EEXIST)
                return failure == 0;
        }
        return false;
    }

    Spot from_;
    ItemIdentity item_;
    std::string path_;
    const posix::TrashCalls& calls_;
    TrashNotes::Notes* ahead_;  ///< may be null
    FileDescriptor pinned_;     ///< the item, opened only to recognise it
};

}  // namespace

std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent, const std::string& name,
                                                  const ItemIdentity& item, const std::string& path,
                                                  TrashNotes* ahead) {
    return posix::moveToTrash(parent, name, item, path, {}, ahead);
}

std::expected<TrashedItem, FileError> posix::moveToTrash(const Directory& parent, const std::string& name,
                                                         const ItemIdentity& item, const std::string& path,
                                                         const TrashCalls& calls, TrashNotes* ahead) {
    return TrashMove({.folder = parent, .name = name}, item, path, calls,
                     ahead != nullptr ? ahead->notes() : nullptr)
        .run();
}

const TrashLayout& trashLayout() {
    static const TrashLayout layout{.items = "files", .notes = "info", .noteSuffix = ".trashinfo"};
    return layout;
}

/// The program talks to a session service, which does not know this process's HOME and XDG_DATA_HOME.
std::optional<Command> trashEmptyingCommand(const std::string& trash) {
    if (!posix::isDesktopsTrash(trash))
        return std::nullopt;
    return Command{.program = "/usr/bin/gio", .arguments = {"trash", "--empty"}};
}

}  // namespace ulvak::platform

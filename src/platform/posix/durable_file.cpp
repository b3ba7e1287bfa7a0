#include "platform/durable_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/files.h"
#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

using posix::lastError;

constexpr mode_t onlyThisUser = 0600;
constexpr mode_t folderOfThisUser = 0700;
constexpr mode_t permissionBits = 0777;
constexpr std::string_view draftPrefix = ".ulvak-";
constexpr std::string_view draftSuffix = ".tmp";
constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::size_t draftDigits = 16;

/// An open file or folder; none when the number is negative.
class Handle {
public:
    explicit Handle(int number) : number_(number) {}
    ~Handle() {
        if (number_ >= 0)
            ::close(number_);
    }
    Handle(Handle&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle& operator=(Handle&&) = delete;

    [[nodiscard]] int get() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

/// A path in the two parts that the calls of this file need.
struct Place {
    std::string folder;
    std::string name;
};

Place placeOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {.folder = ".", .name = path};
    return {.folder = slash == 0 ? "/" : path.substr(0, slash), .name = path.substr(slash + 1)};
}

/// Where a link leads; nothing for what is no link, or not there at all.
std::optional<std::string> linkTarget(const std::string& path) {
    std::array<char, 4096> buffer{};
    const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return std::nullopt;
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

/// The place at the end of a chain of links, where there need not be a file yet.
std::expected<Place, std::error_code> endOfLinks(std::string path) {
    constexpr int mostLinks = 40;  // as many as the kernel follows
    for (int i = 0; i <= mostLinks; ++i) {
        Place place = placeOf(path);
        const auto target = linkTarget(path);
        if (!target)
            return place;
        path = target->starts_with('/') ? *target : place.folder + "/" + *target;
    }
    return std::unexpected(std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

/// Until it is on the disk. Some file systems do not know the call: there it is as safe as it gets.
std::error_code flush(int handle) {
    while (posix::flushToDisk(handle) != 0) {
        if (errno == EINVAL || errno == ENOSYS || errno == ENOTSUP)
            return {};
        if (errno != EINTR)
            return lastError();
    }
    return {};
}

std::error_code writeAll(int handle, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(handle, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return lastError();
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::expected<std::string, std::error_code> newDraftName() {
    std::array<std::uint8_t, draftDigits> random{};
    if (::getentropy(random.data(), random.size()) != 0)
        return std::unexpected(lastError());
    std::string name(draftPrefix);
    for (const std::uint8_t byte : random)
        name += hexDigits[byte % hexDigits.size()];
    return name.append(draftSuffix);
}

bool isDraftName(std::string_view name) {
    if (name.size() != draftPrefix.size() + draftDigits + draftSuffix.size() ||
        !name.starts_with(draftPrefix) || !name.ends_with(draftSuffix))
        return false;
    return name.substr(draftPrefix.size(), draftDigits).find_first_not_of(hexDigits) ==
           std::string_view::npos;
}

/// Removes the drafts of programs that were killed. Whoever is still writing one holds a lock on it, which
/// ends with that program. Their names are never used again, so that only what was looked at can be removed.
void removeDeadDrafts(int folder, const std::string& folderPath) {
    for (const std::string& name : listNames(folderPath)) {
        if (!isDraftName(name))
            continue;
        const Handle draft(
            ::openat(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        struct stat info{};
        if (draft.isOpen() && ::fstat(draft.get(), &info) == 0 && S_ISREG(info.st_mode) &&
            ::flock(draft.get(), LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(folder, name.c_str(), 0);
    }
}

/// The new contents on their way: a file next to the one that it will replace. Gone with the object unless it
/// has taken that one's place.
class Draft {
public:
    /// `folder` stays open for as long as the draft is there.
    static std::expected<Draft, std::error_code> make(int folder) {
        constexpr int mostAttempts = 100;
        for (int i = 0; i < mostAttempts; ++i) {
            auto name = newDraftName();
            if (!name)
                return std::unexpected(name.error());
            Handle file(::openat(folder, name->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                 onlyThisUser));
            if (!file.isOpen() && errno != EEXIST)
                return std::unexpected(lastError());
            if (!file.isOpen())
                continue;
            Draft draft(folder, std::move(*name), std::move(file));
            if (draft.isSafeFromOthers())
                return draft;
        }
        return std::unexpected(std::make_error_code(std::errc::resource_unavailable_try_again));
    }

    ~Draft() {
        if (!name_.empty())
            ::unlinkat(folder_, name_.c_str(), 0);
    }
    Draft(Draft&& other) noexcept
        : folder_(other.folder_), name_(std::exchange(other.name_, {})), file_(std::move(other.file_)) {}
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    Draft& operator=(Draft&&) = delete;

    /// As the file that it will replace, as far as this user may. With another owner or group, those
    /// permissions would mean other people.
    std::error_code takePermissions(const std::optional<struct stat>& old) {
        mode_t mode = onlyThisUser;
        struct stat own{};
        if (old && ::fstat(file_.get(), &own) == 0) {
            const bool isAlike = own.st_uid == old->st_uid && own.st_gid == old->st_gid;
            if (isAlike || ::fchown(file_.get(), old->st_uid, old->st_gid) == 0)
                mode = old->st_mode & permissionBits;
        }
        return ::fchmod(file_.get(), mode) == 0 ? std::error_code() : lastError();
    }

    std::error_code write(std::string_view bytes) {
        if (const auto error = writeAll(file_.get(), bytes))
            return error;
        return flush(file_.get());
    }

    /// Nobody who looks sees anything but the old file or the new one.
    std::error_code become(const std::string& name) {
        if (::renameat(folder_, name_.c_str(), folder_, name.c_str()) != 0)
            return lastError();
        name_.clear();
        return {};
    }

private:
    Draft(int folder, std::string name, Handle file)
        : folder_(folder), name_(std::move(name)), file_(std::move(file)) {}

    /// Locks it against those who remove the drafts of the dead. One of them may have come in between, and
    /// then holds the lock or has removed the file.
    [[nodiscard]] bool isSafeFromOthers() const {
        if (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0)
            return errno != EWOULDBLOCK;  // where nobody can lock, nobody removes
        struct stat info{};
        return ::fstat(file_.get(), &info) == 0 && info.st_nlink > 0;
    }

    int folder_;
    std::string name_;  ///< empty once it is no draft any more
    Handle file_;
};

/// What is at a name, links not followed; nothing when nothing is.
std::expected<std::optional<struct stat>, std::error_code> regularFileAt(int folder,
                                                                         const std::string& name) {
    struct stat info{};
    if (::fstatat(folder, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? std::expected<std::optional<struct stat>, std::error_code>(std::nullopt)
                               : std::unexpected(lastError());
    if (!S_ISREG(info.st_mode))
        return std::unexpected(std::make_error_code(std::errc::not_supported));
    return info;
}

}  // namespace

std::expected<std::string, std::error_code> readFile(const std::string& path, std::size_t most) {
    const Handle file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat info{};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0)
        return std::unexpected(lastError());
    if (!S_ISREG(info.st_mode))
        return std::unexpected(std::make_error_code(std::errc::not_supported));
    if (static_cast<std::uintmax_t>(info.st_size) > most)
        return std::unexpected(std::make_error_code(std::errc::file_too_large));
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(info.st_size));
    std::array<char, std::size_t{64} * 1024> buffer;
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count == 0)
            return bytes;
        if (count < 0 && errno != EINTR)
            return std::unexpected(lastError());
        const auto length = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        if (length > most - bytes.size())  // it has grown meanwhile
            return std::unexpected(std::make_error_code(std::errc::file_too_large));
        bytes.append(buffer.data(), length);
    }
}

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    const auto place = endOfLinks(path);
    if (!place)
        return place.error();
    const Handle folder(::open(place->folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return lastError();
    const auto old = regularFileAt(folder.get(), place->name);
    if (!old)
        return old.error();

    removeDeadDrafts(folder.get(), place->folder);
    auto draft = Draft::make(folder.get());
    if (!draft)
        return draft.error();
    if (const auto error = draft->takePermissions(*old))
        return error;
    if (const auto error = draft->write(bytes))
        return error;
    if (const auto error = draft->become(place->name))
        return error;
    return flush(folder.get());  // the new name, too
}

std::error_code makeFolders(const std::string& path) {
    if (path.size() >= PATH_MAX)
        return std::make_error_code(std::errc::filename_too_long);
    if (const auto there = fileInfo(path))
        return there->isDirectory ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
    const std::string parent = placeOf(path).folder;
    if (const auto error = makeFolders(parent))
        return error;
    if (::mkdir(path.c_str(), folderOfThisUser) != 0 && errno != EEXIST)
        return lastError();
    const Handle above(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (above.isOpen())
        (void)flush(above.get());      // Dropped by design: the folder is there and can be used.
    const auto made = fileInfo(path);  // it may be a link that leads nowhere
    return made && made->isDirectory ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
}

}  // namespace ulvak::platform

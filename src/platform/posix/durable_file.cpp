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
#include <thread>
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

/// Retries a call that a signal may interrupt.
template <typename Call>
int whole(Call call) {
    int result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// A path split into parent and name.
struct SplitPath {
    std::string folder;
    std::string name;
};

SplitPath split(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {.folder = ".", .name = path};
    return {.folder = slash == 0 ? "/" : path.substr(0, slash), .name = path.substr(slash + 1)};
}

/// Where a chain of links ends; the file need not exist yet.
std::expected<SplitPath, std::error_code> endOfLinks(std::string path) {
    constexpr int maxLinks = 40;  // as many as the kernel follows
    for (int i = 0; i <= maxLinks; ++i) {
        SplitPath place = split(path);
        const auto target = linkTarget(path);
        if (!target)
            return place;
        path = target->starts_with('/') ? *target : place.folder + "/" + *target;
    }
    return std::unexpected(std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

FileDescriptor openFolderOf(const SplitPath& place) {
    return FileDescriptor(
        whole([&] { return ::open(place.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

/// Waits until it is on the disk. Some file systems do not support the call; nothing more can be done there.
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

/// Removes the drafts of programs that were killed. A live writer holds a lock on its draft, which ends with
/// the process. Draft names are never reused, so only what was checked can be removed.
void removeDeadDrafts(int folder, const std::string& folderPath) {
    for (const std::string& name : listNames(folderPath)) {
        if (!isDraftName(name))
            continue;
        const FileDescriptor draft(
            ::openat(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        struct stat info{};
        if (draft.isOpen() && ::fstat(draft.get(), &info) == 0 && S_ISREG(info.st_mode) &&
            ::flock(draft.get(), LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(folder, name.c_str(), 0);
    }
}

/// Gives the file a second, unused name. On file systems without hard links, the file is renamed instead: for
/// a moment there is none under the old name.
std::error_code keepAs(int folder, const std::string& name, const std::string& kept) {
    if (whole([&] { return ::linkat(folder, name.c_str(), folder, kept.c_str(), 0); }) == 0)
        return {};
    if (errno == EEXIST)
        return lastError();
    // Reserve the name with an empty file, since rename(2) would replace anything.
    const FileDescriptor own(whole([&] {
        return ::openat(folder, kept.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        onlyThisUser);
    }));
    if (!own.isOpen())
        return lastError();
    if (whole([&] { return ::renameat(folder, name.c_str(), folder, kept.c_str()); }) == 0)
        return {};
    const std::error_code error = lastError();
    ::unlinkat(folder, kept.c_str(), 0);
    return error;
}

/// Keeps the old file aside and returns its new name.
std::expected<std::string, std::error_code> keepAside(int folder, const std::string& name) {
    constexpr int maxKept = 10'000;
    std::string kept = name + ".old";
    std::error_code error = keepAs(folder, name, kept);
    for (int number = 1; error == std::errc::file_exists && number < maxKept; ++number) {
        kept = name + ".old." + std::to_string(number);
        error = keepAs(folder, name, kept);
    }
    if (error)
        return std::unexpected(error);
    return kept;
}

/// Undoes `keepAside`: the old file has its old name, and no other.
void takeBack(int folder, const std::string& name, const std::string& kept) {
    // rename(2) does nothing if both names are the same file.
    if (whole([&] { return ::renameat(folder, kept.c_str(), folder, name.c_str()); }) == 0)
        ::unlinkat(folder, kept.c_str(), 0);
}

/// The new contents: a temporary file beside the one it will replace. Removed with the object unless it has
/// become that file.
class Draft {
public:
    /// `folder` must stay open as long as the draft exists.
    static std::expected<Draft, std::error_code> make(int folder) {
        constexpr int maxAttempts = 100;
        for (int i = 0; i < maxAttempts; ++i) {
            auto name = newDraftName();
            if (!name)
                return std::unexpected(name.error());
            FileDescriptor file(whole([&] {
                return ::openat(folder, name->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                onlyThisUser);
            }));
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

    /// Copies the permissions of the file to be replaced, as far as this user may. If owner or group differ,
    /// they would apply to other people.
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

    /// Atomic: readers see either the old file or the new one.
    std::error_code become(const std::string& name) {
        if (whole([&] { return ::renameat(folder_, name_.c_str(), folder_, name.c_str()); }) != 0)
            return lastError();
        name_.clear();
        return {};
    }

    /// Keeps the old file under another name. Done last: on any earlier failure the old file still has its
    /// name.
    std::error_code becomeBeside(const std::string& name) {
        const auto kept = keepAside(folder_, name);
        if (!kept)
            return kept.error();
        const std::error_code error = become(name);
        if (error)
            takeBack(folder_, name, *kept);
        return error;
    }

private:
    Draft(int folder, std::string name, FileDescriptor file)
        : folder_(folder), name_(std::move(name)), file_(std::move(file)) {}

    /// Locks the draft against removal by `removeDeadDrafts` in another process. One may have come first, and
    /// then holds the lock or has removed the file.
    [[nodiscard]] bool isSafeFromOthers() const {
        if (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0)
            return errno != EWOULDBLOCK;  // if nobody can lock, nobody removes
        struct stat info{};
        return ::fstat(file_.get(), &info) == 0 && info.st_nlink > 0;
    }

    int folder_;
    std::string name_;  ///< empty once it is no longer a draft
    FileDescriptor file_;
};

/// The entry at a name, not following links; nullopt if there is none.
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

enum class Old : std::uint8_t { goes, isKept };

std::error_code replace(const std::string& path, std::string_view bytes, Old what) {
    const auto place = endOfLinks(path);
    if (!place)
        return place.error();
    const FileDescriptor folder = openFolderOf(*place);
    if (!folder.isOpen())
        return lastError();
    auto old = regularFileAt(folder.get(), place->name);
    if (!old)
        return old.error();
    const bool keeps = *old && what == Old::isKept;

    removeDeadDrafts(folder.get(), place->folder);
    auto draft = Draft::make(folder.get());
    if (!draft)
        return draft.error();
    if (const auto error = draft->takePermissions(keeps ? std::nullopt : *old))
        return error;
    if (const auto error = draft->write(bytes))
        return error;
    if (const auto error = keeps ? draft->becomeBeside(place->name) : draft->become(place->name))
        return error;
    return flush(folder.get());  // the new name, too
}

/// The result of locking a folder or file: held, taken by another process, or not possible.
enum class Locking : std::uint8_t { held, taken, impossible };

Locking tryLock(int handle) {
    if (whole([&] { return ::flock(handle, LOCK_EX | LOCK_NB); }) == 0)
        return Locking::held;
    return errno == EWOULDBLOCK ? Locking::taken : Locking::impossible;
}

Locking waitForLock(int handle, std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    // Not much longer than the gaps left by a process that writes one file after another.
    constexpr auto pause = std::chrono::microseconds(300);
    const auto end = Clock::now() + patience;
    Locking result = tryLock(handle);
    for (; result == Locking::taken && Clock::now() < end; result = tryLock(handle))
        std::this_thread::sleep_for(pause);
    return result;
}

}  // namespace

bool isDraftName(std::string_view name) {
    if (name.size() != draftPrefix.size() + draftDigits + draftSuffix.size() ||
        !name.starts_with(draftPrefix) || !name.ends_with(draftSuffix))
        return false;
    return name.substr(draftPrefix.size(), draftDigits).find_first_not_of(hexDigits) ==
           std::string_view::npos;
}

std::expected<std::string, std::error_code> readFile(const std::string& path, std::size_t most) {
    const FileDescriptor file(
        whole([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
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
        if (length > most - bytes.size())  // the file has grown meanwhile
            return std::unexpected(std::make_error_code(std::errc::file_too_large));
        bytes.append(buffer.data(), length);
    }
}

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    return replace(path, bytes, Old::goes);
}

std::error_code replaceFileKeepingOld(const std::string& path, std::string_view bytes) {
    return replace(path, bytes, Old::isKept);
}

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) {
    const auto place = endOfLinks(path);
    if (!place)
        return;
    descriptor_ = openFolderOf(*place);
    Locking result = descriptor_.isOpen() ? waitForLock(descriptor_.get(), patience) : Locking::impossible;
    if (descriptor_.isOpen() && result == Locking::impossible) {
        descriptor_ = FileDescriptor(whole([&] {
            return ::openat(descriptor_.get(), ("." + place->name + ".lock").c_str(),
                            O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, onlyThisUser);
        }));
        result = descriptor_.isOpen() ? waitForLock(descriptor_.get(), patience) : Locking::impossible;
    }
    isHeld_ = result == Locking::held;
}

std::error_code makeFolders(const std::string& path) {
    if (path.size() >= PATH_MAX)
        return std::make_error_code(std::errc::filename_too_long);
    if (const auto there = fileInfo(path))
        return there->isDirectory ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
    const std::string parent = split(path).folder;
    if (const auto error = makeFolders(parent))
        return error;
    if (::mkdir(path.c_str(), folderOfThisUser) != 0 && errno != EEXIST)
        return lastError();
    const FileDescriptor above(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (above.isOpen())
        (void)flush(above.get());      // Dropped by design: the folder exists and can be used.
    const auto made = fileInfo(path);  // may be a broken link
    return made && made->isDirectory ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
}

}  // namespace ulvak::platform

#include "support/temp_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>
#include <utility>

#include "support/isolation.h"
#include "support/system.h"

namespace ulvak::test {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

int checked(int result, const std::string& what) {
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

class Handle {
public:
    explicit Handle(int number) : number_(number) {}
    ~Handle() { ::close(number_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    [[nodiscard]] int get() const { return number_; }

private:
    int number_;
};

timespec timespecOf(FileTime date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const std::chrono::nanoseconds rest = date - seconds;
    return {.tv_sec = seconds.time_since_epoch().count(), .tv_nsec = rest.count()};
}

/// Root in a container may lack the right to; `whyNotUnprivileged` then says that there is no such user.
void giveToUnprivileged(int parent, const std::string& name) {
    if (::geteuid() != 0)
        return;
    const int result = ::fchownat(parent, name.c_str(), unprivilegedId, unprivilegedId, AT_SYMLINK_NOFOLLOW);
    if (result != 0 && errno != EPERM && errno != EINVAL)
        checked(result, "chown " + name);
}

/// Creates declared entries, relative to open folder handles.
class Maker {
public:
    Maker(int tree, TempTree::Owner owner)
        : tree_(tree), givesAway_(owner == TempTree::Owner::unprivileged) {}

    void make(int parent, const std::vector<TreeEntry>& entries) {
        for (const TreeEntry& entry : entries) {
            create(parent, entry);
            finish(parent, entry);
        }
    }

    void makeFolder(int parent, const std::string& name) {
        checked(::mkdirat(parent, name.c_str(), 0755), "mkdir " + name);
        checked(::fchmodat(parent, name.c_str(), 0755, 0), "chmod " + name);  // regardless of the umask
        giveAway(parent, name);
    }

private:
    void create(int parent, const TreeEntry& entry) {
        const char* name = entry.name.c_str();
        switch (entry.kind) {
            case TreeEntry::Kind::folder: {
                makeFolder(parent, entry.name);
                const Handle folder(checked(::openat(parent, name, folderFlags), "open " + entry.name));
                make(folder.get(), entry.children);
                return;
            }
            case TreeEntry::Kind::file:
            case TreeEntry::Kind::text:
                createFile(parent, entry);
                break;
            case TreeEntry::Kind::link:
                checked(::symlinkat(entry.text.c_str(), parent, name), "symlink " + entry.name);
                break;
            case TreeEntry::Kind::hardLink:
                checked(::linkat(tree_, entry.text.c_str(), parent, name, 0), "link " + entry.name);
                return;
            case TreeEntry::Kind::fifo:
                checked(::mkfifoat(parent, name, 0644), "mkfifo " + entry.name);
                break;
            case TreeEntry::Kind::socket:
                createSocket(parent, entry.name);
                break;
        }
        giveAway(parent, entry.name);
    }

    static void createFile(int parent, const TreeEntry& entry) {
        const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
        const Handle made(checked(::openat(parent, entry.name.c_str(), flags, 0644), "create " + entry.name));
        checked(::fchmod(made.get(), 0644), "chmod " + entry.name);
        if (entry.allocated > 0)
            checked(allocate(made.get(), entry.allocated), "allocate " + entry.name);
        if (entry.length > entry.allocated)
            checked(::ftruncate(made.get(), entry.length), "lengthen " + entry.name);
        if (!entry.text.empty() && ::write(made.get(), entry.text.data(), entry.text.size()) !=
                                       static_cast<ssize_t>(entry.text.size()))
            throw std::system_error(errno, std::generic_category(), "write " + entry.name);
    }

    /// Only `bind` creates sockets on every system and for every user. Its path must be short, so a child
    /// process does it with the folder as its working directory.
    static void createSocket(int parent, const std::string& name) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (name.size() >= sizeof address.sun_path)
            throw std::system_error(ENAMETOOLONG, std::generic_category(), "bind " + name);
        name.copy(address.sun_path, name.size());
        const pid_t child = checked(::fork(), "fork");
        if (child == 0) {
            const int handle = ::socket(AF_UNIX, SOCK_STREAM, 0);
            const bool isMade =
                handle >= 0 && ::fchdir(parent) == 0 &&
                ::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
            ::_exit(isMade ? 0 : errno);
        }
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        if (status != 0)
            throw std::system_error(WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD, std::generic_category(),
                                    "bind " + name);
        checked(::fchmodat(parent, name.c_str(), 0644, 0), "chmod " + name);
    }

    static void finish(int parent, const TreeEntry& entry) {
        const char* name = entry.name.c_str();
        if (entry.mode)
            checked(::fchmodat(parent, name, *entry.mode, 0), "chmod " + entry.name);
        if (entry.modified) {
            const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, timespecOf(*entry.modified)};
            checked(::utimensat(parent, name, times, AT_SYMLINK_NOFOLLOW), "date " + entry.name);
        }
    }

    void giveAway(int parent, const std::string& name) const {
        if (givesAway_)
            giveToUnprivileged(parent, name);
    }

    int tree_;
    bool givesAway_;
};

/// Empties a tree. Each subfolder is first moved up into the tree's root, so two handles and short paths
/// suffice for any depth, and no mount is entered, because mount points cannot be moved.
class Remover {
public:
    explicit Remover(int tree) : tree_(tree) {}

    /// Returns the first error, if any; entries it affected remain.
    std::error_code run() {
        removeIn(tree_);
        while (!moved_.empty()) {
            const std::string name = std::move(moved_.back());
            moved_.pop_back();
            const int opened = ::openat(tree_, name.c_str(), folderFlags);
            if (note(opened)) {
                const Handle folder(opened);
                removeIn(folder.get());
            }
            note(::unlinkat(tree_, name.c_str(), AT_REMOVEDIR));
        }
        return error_;
    }

private:
    bool note(int result) {
        if (result < 0 && !error_)
            error_ = {errno, std::generic_category()};
        return result >= 0;
    }

    void removeIn(int folder) {
        for (const std::string& name : names(folder)) {
            struct stat info{};
            if (!note(::fstatat(folder, name.c_str(), &info, AT_SYMLINK_NOFOLLOW)))
                continue;
            if (!S_ISDIR(info.st_mode))
                note(::unlinkat(folder, name.c_str(), 0));
            else if (::unlinkat(folder, name.c_str(), AT_REMOVEDIR) != 0)
                moveUp(folder, name);
        }
    }

    std::vector<std::string> names(int folder) {
        std::vector<std::string> result;
        const int again = ::openat(folder, ".", folderFlags);
        if (!note(again))
            return result;
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(again), &::closedir);
        while (const dirent* entry = ::readdir(listing.get())) {
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                result.emplace_back(name);
        }
        return result;
    }

    void moveUp(int folder, const std::string& name) {
        // Moving and emptying a folder require write permission. Another user's folder stays closed, and the
        // move fails.
        ::fchmodat(folder, name.c_str(), 0700, 0);
        for (;;) {
            std::string there = "removed-" + std::to_string(++count_);
            if (::renameat(folder, name.c_str(), tree_, there.c_str()) == 0) {
                moved_.push_back(std::move(there));
                return;
            }
            const bool isTaken = errno == EEXIST || errno == ENOTEMPTY || errno == ENOTDIR;
            if (!isTaken) {
                note(-1);
                return;
            }
        }
    }

    int tree_;
    int count_ = 0;
    std::vector<std::string> moved_;
    std::error_code error_;
};

/// Opened anew: an older handle would not see mounts made since by a child.
Handle opened(const std::string& path) {
    return Handle(checked(::open(path.c_str(), folderFlags), "open " + path));
}

std::string newFolder() {
    const char* base = std::getenv("TMPDIR");
    std::string path = std::string(base != nullptr && base[0] == '/' ? base : "/tmp") + "/ulvak-test-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp " + path);
    checked(::chmod(path.c_str(), 0755), "chmod " + path);
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    return resolved ? resolved.get() : path;
}

}  // namespace

TreeEntry TreeEntry::withMode(mode_t newMode) && {
    mode = newMode;
    return std::move(*this);
}

TreeEntry TreeEntry::modifiedAt(FileTime date) && {
    modified = date;
    return std::move(*this);
}

TreeEntry folder(std::string name, std::vector<TreeEntry> children) {
    return {.kind = TreeEntry::Kind::folder, .name = std::move(name), .children = std::move(children)};
}

TreeEntry file(std::string name, std::int64_t allocated) {
    return {.name = std::move(name), .allocated = allocated};
}

TreeEntry sparseFile(std::string name, std::int64_t length) {
    return {.name = std::move(name), .length = length};
}

TreeEntry textFile(std::string name, std::string text) {
    return {.kind = TreeEntry::Kind::text, .name = std::move(name), .text = std::move(text)};
}

TreeEntry link(std::string name, std::string target) {
    return {.kind = TreeEntry::Kind::link, .name = std::move(name), .text = std::move(target)};
}

TreeEntry hardLink(std::string name, std::string existing) {
    return {.kind = TreeEntry::Kind::hardLink, .name = std::move(name), .text = std::move(existing)};
}

TreeEntry fifo(std::string name) {
    return {.kind = TreeEntry::Kind::fifo, .name = std::move(name)};
}

TreeEntry socket(std::string name) {
    return {.kind = TreeEntry::Kind::socket, .name = std::move(name)};
}

TempTree::TempTree(const std::vector<TreeEntry>& entries, Owner owner) : path_(newFolder()), owner_(owner) {
    handle_ = checked(::open(path_.c_str(), folderFlags), "open " + path_);
    if (owner == Owner::unprivileged)
        giveToUnprivileged(AT_FDCWD, path_);
    add(entries);
}

TempTree::~TempTree() {
    ::fchmod(handle_, 0700);
    std::error_code error = Remover(handle_).run();
    ::close(handle_);
    if (::rmdir(path_.c_str()) != 0 && !error)
        error = {errno, std::generic_category()};
    if (error)
        ADD_FAILURE() << path_ << " was not removed: " << error.message();
}

std::string TempTree::path(std::string_view relative) const {
    return path_ + "/" + std::string(relative);
}

void TempTree::add(std::string_view below, const std::vector<TreeEntry>& entries) {
    const Handle tree = opened(path_);
    const std::string where(below.empty() ? "." : below);
    const Handle folder(checked(::openat(tree.get(), where.c_str(), folderFlags), "open " + where));
    Maker(tree.get(), owner_).make(folder.get(), entries);
}

std::string TempTree::addChain(const std::string& name, int levels, const std::vector<TreeEntry>& bottom,
                               const std::vector<TreeEntry>& beside) {
    std::string relative;
    const Handle tree = opened(path_);
    auto parent = std::make_unique<Handle>(checked(::openat(tree.get(), ".", folderFlags), "open " + path_));
    Maker maker(tree.get(), owner_);
    for (int level = 0; level < levels; ++level) {
        maker.makeFolder(parent->get(), name);
        maker.make(parent->get(), beside);
        parent = std::make_unique<Handle>(
            checked(::openat(parent->get(), name.c_str(), folderFlags), "open " + name));
        relative += (level == 0 ? "" : "/") + name;
    }
    maker.make(parent->get(), bottom);
    return relative;
}

std::int64_t TempTree::allocated(std::string_view relative) const {
    struct stat info{};
    checked(::lstat(path(relative).c_str(), &info), std::string(relative));
    return std::int64_t{info.st_blocks} * 512;
}

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool exists(const std::string& path) {
    struct stat info{};
    return ::lstat(path.c_str(), &info) == 0;
}

mode_t modeOf(const std::string& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 07777U : 0U;
}

}  // namespace ulvak::test

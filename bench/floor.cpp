// The floor that the scan is measured against: the same system calls for every folder and every entry, on as
// many threads as there are cores, keeping nothing. Whatever the scan takes beyond this is its own overhead.
//
//     ulvak_floor FOLDER...
//
// Prints the number of entries (including the given folders), the number of folders, and the bytes allocated
// in total. A file with several hard links counts once per link.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t bufferSize = 64 * 1024;
constexpr std::uint64_t blockSize = 512;
/// A common cache line size: data written constantly by one thread is kept this far from another's.
constexpr std::size_t cacheLine = 64;

/// A folder whose sub-folders are still to be opened relative to it.
class Handle {
public:
    explicit Handle(int number) : number_(number) {}
    ~Handle() { ::close(number_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

/// A folder that has not been opened yet.
struct Pending {
    std::shared_ptr<const Handle> parent;  ///< null: `name` is a path from the command line
    std::string name;
};

struct Totals {
    std::uint64_t entries = 0;
    std::uint64_t folders = 0;
    std::uint64_t bytes = 0;
    std::uint64_t failures = 0;

    Totals& operator+=(const Totals& other) {
        entries += other.entries;
        folders += other.folders;
        bytes += other.bytes;
        failures += other.failures;
        return *this;
    }
};

/// Pending folders, one stack per thread. A thread works on its own newest folder, which keeps few folders
/// open, and takes the older half of another's stack when its own is empty.
class WorkShare {
public:
    explicit WorkShare(std::size_t threads) : stacks_(threads) {}

    /// Moves `found` onto the stack of `thread` and leaves it empty.
    void push(std::size_t thread, std::vector<Pending>& found) {
        if (found.empty())
            return;
        std::size_t waiting = 0;
        {
            Stack& own = stacks_[thread];
            const std::scoped_lock lock(own.mutex);
            std::ranges::move(found, std::back_inserter(own.items));
            waiting = own.items.size();
        }
        found.clear();
        // One is for the pushing thread itself; nobody needs to wake for it.
        if (waiting > 1 && sleepers_.load(std::memory_order_relaxed) > 0) {
            const std::scoped_lock lock(sleepMutex_);
            wake_.notify_all();
        }
    }

    /// The next folder for `thread`; sleeps while others may still find some. nullopt at the end.
    [[nodiscard]] std::optional<Pending> next(std::size_t thread) {
        if (auto mine = newest(thread))
            return mine;
        if (auto taken = steal(thread))
            return taken;
        return awaitWork(thread);
    }

private:
    struct alignas(cacheLine) Stack {
        std::mutex mutex;
        std::deque<Pending> items;  // guarded by `mutex`; oldest first
    };

    [[nodiscard]] std::optional<Pending> newest(std::size_t thread) {
        Stack& own = stacks_[thread];
        const std::scoped_lock lock(own.mutex);
        if (own.items.empty())
            return std::nullopt;
        std::optional<Pending> result(std::move(own.items.back()));
        own.items.pop_back();
        return result;
    }

    [[nodiscard]] std::optional<Pending> steal(std::size_t thread) {
        for (std::size_t step = 1; step < stacks_.size(); ++step) {
            std::vector<Pending> taken = olderHalf(stacks_[(thread + step) % stacks_.size()]);
            if (taken.empty())
                continue;
            std::optional<Pending> result(std::move(taken.back()));
            taken.pop_back();
            push(thread, taken);
            return result;
        }
        return std::nullopt;
    }

    [[nodiscard]] static std::vector<Pending> olderHalf(Stack& victim) {
        const std::scoped_lock lock(victim.mutex);
        const auto end = victim.items.begin() + static_cast<std::ptrdiff_t>((victim.items.size() + 1) / 2);
        std::vector<Pending> taken(std::move_iterator(victim.items.begin()), std::move_iterator(end));
        victim.items.erase(victim.items.begin(), end);
        return taken;
    }

    /// A push either precedes the look at its stack here, and is found, or follows it, and then sees the
    /// sleeper count: the stack's lock orders the two. When all threads sleep, nothing is left.
    [[nodiscard]] std::optional<Pending> awaitWork(std::size_t thread) {
        std::unique_lock lock(sleepMutex_);
        for (;;) {
            sleepers_.fetch_add(1, std::memory_order_relaxed);
            if (hasWork()) {
                sleepers_.fetch_sub(1, std::memory_order_relaxed);
                lock.unlock();
                if (auto taken = steal(thread))
                    return taken;
                lock.lock();
                continue;
            }
            if (sleepers_.load(std::memory_order_relaxed) == stacks_.size())
                finished_ = true;
            if (finished_) {
                wake_.notify_all();
                return std::nullopt;
            }
            wake_.wait(lock);
            if (finished_)
                return std::nullopt;
            sleepers_.fetch_sub(1, std::memory_order_relaxed);
        }
    }

    [[nodiscard]] bool hasWork() {
        return std::ranges::any_of(stacks_, [](Stack& stack) {
            const std::scoped_lock lock(stack.mutex);
            return !stack.items.empty();
        });
    }

    std::deque<Stack> stacks_;
    std::atomic<std::size_t> sleepers_ = 0;
    std::mutex sleepMutex_;
    std::condition_variable wake_;
    bool finished_ = false;  // guarded by `sleepMutex_`
};

/// One thread of the walk.
class Worker {
public:
    Worker(WorkShare& share, std::size_t thread)
        : share_(share), thread_(thread), buffer_(std::make_unique_for_overwrite<std::byte[]>(bufferSize)) {}

    /// Counts the command-line folders themselves and pushes them on this thread's stack.
    void begin(const std::vector<std::string>& roots) {
        for (const std::string& root : roots) {
            addEntry(AT_FDCWD, root.c_str(), 0);
            found_.push_back({.parent = nullptr, .name = root});
        }
        share_.push(thread_, found_);
    }

    Totals run() {
        while (auto pending = share_.next(thread_))
            list(std::move(*pending));
        return totals_;
    }

private:
    void list(Pending pending) {
        const bool isRoot = !pending.parent;
        const int parent = isRoot ? AT_FDCWD : pending.parent->number();
        const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (isRoot ? 0 : O_NOFOLLOW);
        const int opened = ::openat(parent, pending.name.c_str(), flags);
        pending.parent.reset();
        if (opened < 0) {
            fail(pending.name);
            return;
        }
        ++totals_.folders;
        readEntries(opened);
        if (found_.empty()) {
            ::close(opened);
            return;
        }
        const auto handle = std::make_shared<const Handle>(opened);
        for (Pending& subfolder : found_)
            subfolder.parent = handle;
        share_.push(thread_, found_);
    }

    void readEntries(int folder) {
        for (;;) {
            const auto count = ::syscall(SYS_getdents64, folder, buffer_.get(), bufferSize);
            if (count < 0)
                fail("a listing");
            if (count <= 0)
                return;
            const std::byte* const end = buffer_.get() + count;
            for (const std::byte* record = buffer_.get(); record < end;)
                record += readRecord(folder, record);
        }
    }

    /// Reads the kernel's record: inode, offset, record length, type, NUL-terminated name. Returns the record
    /// length.
    std::size_t readRecord(int folder, const std::byte* record) {
        unsigned short length = 0;
        std::memcpy(&length, record + 16, sizeof length);
        const char* name = reinterpret_cast<const char*>(record + 19);
        const bool isDots = name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
        if (!isDots && addEntry(folder, name, AT_SYMLINK_NOFOLLOW))
            found_.push_back({.parent = nullptr, .name = name});
        return length;
    }

    /// Counts an entry. Returns whether it is a folder.
    bool addEntry(int folder, const char* name, int flags) {
        struct statx info;  // NOLINT(cppcoreguidelines-pro-type-member-init): the kernel fills what is read
        if (::statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_BLOCKS | STATX_MTIME, &info) !=
            0) {
            fail(name);
            return false;
        }
        ++totals_.entries;
        totals_.bytes += info.stx_blocks * blockSize;
        return S_ISDIR(info.stx_mode);
    }

    void fail(std::string_view what) {
        ++totals_.failures;
        std::fprintf(stderr, "%.*s: %s\n", static_cast<int>(what.size()), what.data(), std::strerror(errno));
    }

    WorkShare& share_;
    std::size_t thread_;
    std::unique_ptr<std::byte[]> buffer_;
    std::vector<Pending> found_;
    Totals totals_;
};

Totals walk(const std::vector<std::string>& roots) {
    const std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
    WorkShare share(threads);
    std::vector<Totals> parts(threads);
    Worker first(share, 0);
    first.begin(roots);
    {
        std::vector<std::jthread> others;
        for (std::size_t thread = 1; thread < threads; ++thread)
            others.emplace_back([&share, &parts, thread] { parts[thread] = Worker(share, thread).run(); });
        parts[0] = first.run();
    }
    Totals all;
    for (const Totals& part : parts)
        all += part;
    return all;
}

void allowManyOpenFolders() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER...\n", argv[0]);
        return 2;
    }
    allowManyOpenFolders();
    const Totals all = walk({argv + 1, argv + argc});
    std::printf("%ju entries, %ju folders, %ju bytes\n", static_cast<std::uintmax_t>(all.entries),
                static_cast<std::uintmax_t>(all.folders), static_cast<std::uintmax_t>(all.bytes));
    return all.failures == 0 ? 0 : 1;
}

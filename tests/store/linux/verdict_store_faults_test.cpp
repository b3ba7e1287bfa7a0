#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "store/verdict_store.h"
#include "support/temp_tree.h"

// Every call the store makes to read, merge, lock and write fails once, then every pair of them, then all
// from there on: no label may be lost. The C library's functions are overridden, on this thread and while
// `Faults` lives.

namespace ulvak {
namespace {

/// Which of the following calls fail, and how.
class Faults {
public:
    enum class Span : std::uint8_t { once, forGood };
    /// Instead of an error, only one byte is read or written.
    static constexpr int shortCount = -1;

    Faults(int first, int error, Span span) : Faults(first, first, error, span) {}
    Faults(int first, int second, int error, Span span = Span::once)
        : first_(first), second_(second), error_(error), span_(span) {
        current = this;
    }
    ~Faults() { current = nullptr; }
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    /// The error for the call about to be made; 0 for none.
    static int next() {
        if (current == nullptr)
            return 0;
        const int number = current->calls_++;
        const bool fails = number == current->first_ || number == current->second_ ||
                           (number > current->first_ && current->span_ == Span::forGood);
        return fails ? current->error_ : 0;
    }

    /// Whether both faults have been injected.
    [[nodiscard]] bool hasStruck() const { return calls_ > first_ && calls_ > second_; }

private:
    static thread_local Faults* current;
    int first_;
    int second_;
    int error_;
    Span span_;
    int calls_ = 0;
};

thread_local Faults* Faults::current = nullptr;

/// Fails as planned, or calls the C library.
template <typename Call>
auto unlessPlanned(Call call) -> decltype(call()) {
    if (const int error = Faults::next(); error > 0) {
        errno = error;
        return -1;
    }
    return call();
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

template <typename Function, typename Bytes>
ssize_t unlessPlannedShort(Function function, int file, Bytes bytes, std::size_t length) {
    const int error = Faults::next();
    if (error > 0) {
        errno = error;
        return -1;
    }
    return function(file, bytes, error == Faults::shortCount && length > 1 ? 1 : length);
}

}  // namespace
}  // namespace ulvak

// NOLINTBEGIN(*-reserved-identifier,readability-inconsistent-declaration-parameter-name): the library's names
extern "C" {

ssize_t read(int file, void* bytes, size_t length) {
    static const auto original = ulvak::next<ssize_t (*)(int, void*, size_t)>("read");
    return ulvak::unlessPlannedShort(original, file, bytes, length);
}

ssize_t write(int file, const void* bytes, size_t length) {
    static const auto original = ulvak::next<ssize_t (*)(int, const void*, size_t)>("write");
    return ulvak::unlessPlannedShort(original, file, bytes, length);
}

int open(const char* path, int flags, ...) {
    static const auto original = ulvak::next<int (*)(const char*, int, ...)>("open");
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    return ulvak::unlessPlanned([&] { return original(path, flags, mode); });
}

int openat(int folder, const char* path, int flags, ...) {
    static const auto original = ulvak::next<int (*)(int, const char*, int, ...)>("openat");
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    return ulvak::unlessPlanned([&] { return original(folder, path, flags, mode); });
}

int fsync(int file) {
    static const auto original = ulvak::next<int (*)(int)>("fsync");
    return ulvak::unlessPlanned([&] { return original(file); });
}

int flock(int file, int operation) noexcept {
    static const auto original = ulvak::next<int (*)(int, int)>("flock");
    return ulvak::unlessPlanned([&] { return original(file, operation); });
}

int renameat(int from, const char* old, int to, const char* name) noexcept {
    static const auto original = ulvak::next<int (*)(int, const char*, int, const char*)>("renameat");
    return ulvak::unlessPlanned([&] { return original(from, old, to, name); });
}

int linkat(int from, const char* old, int to, const char* name, int flags) noexcept {
    static const auto original = ulvak::next<int (*)(int, const char*, int, const char*, int)>("linkat");
    return ulvak::unlessPlanned([&] { return original(from, old, to, name, flags); });
}

int fstat(int file, struct stat* info) noexcept {
    static const auto original = ulvak::next<int (*)(int, struct stat*)>("fstat");
    return ulvak::unlessPlanned([&] { return original(file, info); });
}

int fstatat(int folder, const char* path, struct stat* info, int flags) noexcept {
    static const auto original = ulvak::next<int (*)(int, const char*, struct stat*, int)>("fstatat");
    return ulvak::unlessPlanned([&] { return original(folder, path, info, flags); });
}

int fchmod(int file, mode_t mode) noexcept {
    static const auto original = ulvak::next<int (*)(int, mode_t)>("fchmod");
    return ulvak::unlessPlanned([&] { return original(file, mode); });
}

int unlinkat(int folder, const char* path, int flags) noexcept {
    static const auto original = ulvak::next<int (*)(int, const char*, int)>("unlinkat");
    return ulvak::unlessPlanned([&] { return original(folder, path, flags); });
}

int getentropy(void* bytes, size_t length) {
    static const auto original = ulvak::next<int (*)(void*, size_t)>("getentropy");
    return ulvak::unlessPlanned([&] { return original(bytes, length); });
}

}  // extern "C"
// NOLINTEND(*-reserved-identifier,readability-inconsistent-declaration-parameter-name)

namespace ulvak {
namespace {

using test::TempTree;
using testing::Key;

void saveOne(VerdictStore& store, const std::string& id) {
    store.save({.level = SafetyLevel::keep, .title = "Videolarım", .source = VerdictSource::user},
               Finding{.id = id, .size = 1});
}

/// Two programs with one label each in the same file.
struct TwoPrograms {
    TwoPrograms() {
        saveOne(one, "/one");
        saveOne(other, "/other");
    }

    /// All labels in the file and in any that were set aside next to it.
    [[nodiscard]] VerdictEntries allOnDisk() const {
        VerdictEntries all;
        for (const auto& entry : std::filesystem::directory_iterator(tree.path("Ulvak")))
            all.merge(decodeEntries(test::textOf(entry.path())).value_or(VerdictEntries()));
        return all;
    }
    [[nodiscard]] VerdictEntries onDisk() const { return VerdictStore(path).entries(); }

    TempTree tree;
    std::string path = tree.path("Ulvak/verdicts.json");
    VerdictStore one{path};
    VerdictStore other{path};
};

constexpr std::array errors = {ENOSPC, EIO,   EINTR,  EACCES, ESTALE, ENOMEM,
                               EMFILE, EROFS, EDQUOT, ENOLCK, EPERM,  Faults::shortCount};

/// Runs `save` with a fault injected at each of its calls in turn, until it completes without one, and passes
/// each outcome to `judge`. Returns the number of runs.
int withFaultsAtEveryCall(Faults::Span span, const std::function<void(TwoPrograms&)>& save,
                          const std::function<void(TwoPrograms&)>& judge) {
    int runs = 0;
    for (const int error : errors) {
        if (error == EINTR && span == Faults::Span::forGood)
            continue;  // no system only ever interrupts
        bool hasStruck = true;
        for (int call = 0; hasStruck; ++call, ++runs) {
            SCOPED_TRACE("call " + std::to_string(call) + ": " +
                         (error > 0 ? std::generic_category().message(error) : "one byte only"));
            TwoPrograms programs;
            {
                const Faults faults(call, error, span);
                save(programs);
                hasStruck = faults.hasStruck();
            }
            judge(programs);
            if (testing::Test::HasFailure())
                return runs;
        }
    }
    testing::Test::RecordProperty("runs", runs);
    return runs;
}

void saveNew(TwoPrograms& programs) {
    saveOne(programs.one, "/new");
}

const auto allThree = testing::UnorderedElementsAre(Key("/new"), Key("/one"), Key("/other"));
const auto bothThatWereThere = testing::IsSupersetOf({Key("/one"), Key("/other")});

TEST(VerdictStoreWithFaults, LosesNoLabelWhenOneCallFails) {
    const int runs = withFaultsAtEveryCall(Faults::Span::once, saveNew, [](TwoPrograms& programs) {
        EXPECT_TRUE(programs.one.entries().contains("/new"));
        EXPECT_THAT(programs.onDisk(), allThree);
        saveOne(programs.other, "/more");
        EXPECT_THAT(programs.onDisk(), testing::SizeIs(4));
    });
    EXPECT_GT(runs, 200);
}

TEST(VerdictStoreWithFaults, LosesNoLabelWhenTwoCallsFail) {
    int runs = 0;
    for (const int error : {ENOSPC, EIO, EINTR, EACCES, ESTALE, Faults::shortCount}) {
        for (int first = 0, second = 1; second > first; ++first) {
            bool hasStruck = true;
            for (second = first; hasStruck; ++runs) {
                ++second;
                SCOPED_TRACE("calls " + std::to_string(first) + " and " + std::to_string(second) + ": " +
                             std::to_string(error));
                TwoPrograms programs;
                {
                    const Faults faults(first, second, error);
                    saveNew(programs);
                    hasStruck = faults.hasStruck();
                }
                programs.one.writeRest();
                ASSERT_THAT(programs.onDisk(), testing::IsSupersetOf({Key("/new"), Key("/one")}));
                ASSERT_THAT(programs.allOnDisk(), allThree) << "beside the file if it could not be read";
            }
        }
    }
    RecordProperty("runs", runs);
    EXPECT_GT(runs, 1000);
}

TEST(VerdictStoreWithFaults, LosesNoLabelWhenNothingWorksAnyMoreAndThenAllDoes) {
    const int runs = withFaultsAtEveryCall(Faults::Span::forGood, saveNew, [](TwoPrograms& programs) {
        EXPECT_TRUE(programs.one.entries().contains("/new")) << "remembered until the program ends";
        EXPECT_THAT(programs.onDisk(), bothThatWereThere);
        programs.one.writeRest();
        EXPECT_THAT(programs.onDisk(), allThree);
    });
    EXPECT_GT(runs, 200);
}

TEST(VerdictStoreWithFaults, KeepsTheFileThatItCouldNotReadAtTheStart) {
    for (const Faults::Span span : {Faults::Span::once, Faults::Span::forGood}) {
        const int runs = withFaultsAtEveryCall(
            span,
            [](TwoPrograms& programs) {
                VerdictStore late(programs.path);
                saveOne(late, "/new");
            },
            [&](TwoPrograms& programs) {
                EXPECT_THAT(programs.allOnDisk(), bothThatWereThere);
                if (span == Faults::Span::once) {
                    EXPECT_THAT(programs.onDisk(), allThree);
                }
            });
        EXPECT_GT(runs, 200);
    }
}

}  // namespace
}  // namespace ulvak

// The system calls of the program without its window.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <string>
#include <vector>

#include "support/environment.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::ScopedEnvironment;
using test::TempTree;
using test::textFile;

/// Calls that create, remove, rename or change an entry, whatever their arguments.
constexpr long changing[] = {
    SYS_mkdirat,
    SYS_mknodat,
    SYS_symlinkat,
    SYS_linkat,
    SYS_unlinkat,
    SYS_renameat2,
    SYS_fchmodat,
    SYS_fchmod,
    SYS_fchownat,
    SYS_fchown,
    SYS_utimensat,
    SYS_truncate,
    SYS_ftruncate,
    SYS_fallocate,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
    SYS_mount,
    SYS_umount2,
#ifdef SYS_renameat
    SYS_renameat,
#endif
#ifdef SYS_open
    // Older calls of this architecture. The first two are no longer used to open anything, not even for
    // reading.
    SYS_open,
    SYS_creat,
    SYS_mkdir,
    SYS_mknod,
    SYS_symlink,
    SYS_link,
    SYS_unlink,
    SYS_rmdir,
    SYS_rename,
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
};

/// From here on, this process and whatever it executes are killed by any call that creates, truncates or
/// changes an entry. Writes to existing files cannot be told from writes to /dev/null, and the arguments of
/// `openat2` cannot be seen; `Program.DumpChangesNothing` would detect the effects of both.
bool dieOfChanges() {
    constexpr unsigned deadly = SECCOMP_RET_KILL_PROCESS;
    std::vector<sock_filter> program = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const long call : changing) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, deadly));
    }
    program.insert(program.end(),
                   {BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
                    BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
                    BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_CREAT | O_TRUNC, 0, 1),
                    BPF_STMT(BPF_RET | BPF_K, deadly), BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)});
    const sock_fprog filter = {.len = static_cast<unsigned short>(program.size()), .filter = program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

/// The `waitpid` status of a program that may change nothing.
int statusWithoutChanges(std::vector<std::string> line) {
    std::vector<char*> arguments;
    for (std::string& word : line)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        if (::dup2(nowhere, STDOUT_FILENO) >= 0 && dieOfChanges())
            ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

class DumpCalls : public testing::Test {
protected:
    TempTree tree{
        {folder("ev", {folder(".npm", {file("x", 70'000'000)}), folder(".gizemli", {file("x", 310'000'000)}),
                       folder("veri", {folder("Ulvak", {textFile("verdicts.json", "bozuk")})})}),
         folder("gecici", {folder("T")})}};
    ScopedEnvironment environment{{"HOME", tree.path("ev")},
                                  {"XDG_DATA_HOME", tree.path("ev/veri")},
                                  {"TMPDIR", tree.path("gecici/T")},
                                  {"ULVAK_MODEL_URL", "http://127.0.0.1:9"}};
};

#if !defined(ULVAK_SANITIZED) && !defined(ULVAK_COVERAGE)
// Not with sanitizers or coverage, which make such calls themselves.
TEST_F(DumpCalls, ChangeNothingAnywhere) {
    EXPECT_EQ(statusWithoutChanges({ULVAK_PROGRAM, "--dump"}), 0);
    EXPECT_EQ(statusWithoutChanges({ULVAK_PROGRAM, "--dump", "--ai"}), 0);
}
#endif

TEST_F(DumpCalls, WouldEndTheProgramIfTheyChangedSomething) {
    const std::string there = tree.path("ev/.npm/x");
    for (const std::vector<std::string>& line : {std::vector<std::string>{"/bin/touch", there},
                                                 {"/bin/mkdir", tree.path("yeni")},
                                                 {"/bin/mv", there, tree.path("y")},
                                                 {"/bin/chmod", "600", there},
                                                 {"/bin/rm", "-f", there}}) {
        const int status = statusWithoutChanges(line);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSYS) << line.front() << ": " << status;
    }
}

}  // namespace
}  // namespace ulvak

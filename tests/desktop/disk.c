// Makes the disk behave as the desktop tests need. Preloaded into the program; applies below the folder
// ULVAK_DISK_HOME, a path without links:
// - Sparse files appear fully allocated, so that a home of 25 GB takes 4 MB.
// - While the file ULVAK_DISK_HOLD exists, the disk does not answer.
//
// The program queries allocated sizes only through statx(2). If it ever used another call, it would find a
// nearly empty home.

#define _GNU_SOURCE

#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

static const char* home;
static const char* hold;

__attribute__((constructor)) static void readSettings(void) {
    home = getenv("ULVAK_DISK_HOME");
    hold = getenv("ULVAK_DISK_HOLD");
}

static bool isHomeOrBelow(const char* path) {
    const size_t length = strlen(home);
    return strncmp(path, home, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

// `path` as passed to statx(2): absolute, or relative to an open folder.
static bool isInHome(int folder, const char* path) {
    if (path[0] == '/')
        return isHomeOrBelow(path);
    char link[64];
    if (folder == AT_FDCWD)
        snprintf(link, sizeof link, "/proc/self/cwd");
    else
        snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
    char target[4096];
    const ssize_t length = readlink(link, target, sizeof target - 1);
    if (length < 0)
        return false;
    target[length] = '\0';
    return isHomeOrBelow(target);
}

// A file without any blocks stands for an empty one.
static bool isSparse(const struct statx* info) {
    return S_ISREG(info->stx_mode) && info->stx_blocks > 0 && info->stx_blocks * 512 < info->stx_size;
}

static void waitUntilTheDiskAnswers(void) {
    const struct timespec pause = {.tv_nsec = 10 * 1000 * 1000};
    while (access(hold, F_OK) == 0)
        nanosleep(&pause, NULL);
}

int statx(int folder, const char* restrict path, int flags, unsigned wanted, struct statx* restrict info) {
    if (!home || !hold || (wanted & STATX_BLOCKS) == 0 || !isInHome(folder, path))
        return (int)syscall(SYS_statx, folder, path, flags, wanted, info);
    waitUntilTheDiskAnswers();
    const long result = syscall(SYS_statx, folder, path, flags, wanted | STATX_SIZE | STATX_TYPE, info);
    if (result == 0 && isSparse(info)) {
        const unsigned long block = info->stx_blksize;
        info->stx_blocks = (info->stx_size + block - 1) / block * block / 512;
    }
    return (int)result;
}

// Shows every file of a sparse demonstration home as if all its bytes were on the disk, so that a program can
// be tried on 25 GB that take 4 MB. To be preloaded; ULVAK_SPARSE_HOME names the home, without links in its
// path.
//
// The program learns by statx(2) alone what a file holds. Should it ever ask in another way, it would find a
// home with next to nothing in it.

#define _GNU_SOURCE

#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static const char* home;
static size_t homeLength;

__attribute__((constructor)) static void readHome(void) {
    home = getenv("ULVAK_SPARSE_HOME");
    homeLength = home ? strlen(home) : 0;
}

static bool isHomeOrBelow(const char* path) {
    return homeLength > 0 && strncmp(path, home, homeLength) == 0 &&
           (path[homeLength] == '/' || path[homeLength] == '\0');
}

// `path` as statx(2) takes it: from the root, or from the folder that is open.
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

// A file with no block at all is meant to hold nothing.
static bool isSparse(const struct statx* info) {
    return S_ISREG(info->stx_mode) && info->stx_blocks > 0 && info->stx_blocks * 512 < info->stx_size;
}

int statx(int folder, const char* restrict path, int flags, unsigned wanted, struct statx* restrict info) {
    const bool wantsBlocks = (wanted & STATX_BLOCKS) != 0;
    if (wantsBlocks)
        wanted |= STATX_SIZE | STATX_TYPE;
    const long result = syscall(SYS_statx, folder, path, flags, wanted, info);
    if (result == 0 && wantsBlocks && isSparse(info) && isInHome(folder, path)) {
        const unsigned long block = info->stx_blksize;
        info->stx_blocks = (info->stx_size + block - 1) / block * block / 512;
    }
    return (int)result;
}

#pragma once

#include <dirent.h>
#include <unistd.h>

#include <memory>

namespace ulvak::platform::posix {

struct CloseStream {
    void operator()(DIR* stream) const { ::closedir(stream); }
};
using FolderStream = std::unique_ptr<DIR, CloseStream>;

/// Takes over the handle of an open folder, and closes it with the stream or, failing, at once. Null also for
/// a negative handle.
[[nodiscard]] inline FolderStream folderStream(int handle) {
    if (handle < 0)
        return nullptr;
    FolderStream stream(::fdopendir(handle));
    if (!stream)
        ::close(handle);
    return stream;
}

}  // namespace ulvak::platform::posix

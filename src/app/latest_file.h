#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/workers.h"

namespace ulvak {

/// Writes a small file on a worker: a disk that is slow to answer does not hold the window. Of several
/// versions that come while one is being written only the last is written, and it is the last on the disk.
/// Threads: that of the workers. A version is written at the latest when the workers are done.
class LatestFile {
public:
    /// `workers` outlives this object.
    explicit LatestFile(Workers& workers);

    /// Called on the worker, for a version that is written; absent when there is nothing to write.
    using Contents = std::function<std::optional<std::string>()>;

    /// Durable, whole or not at all; failures are dropped by design.
    void write(std::string path, Contents contents);

private:
    struct Queue;
    Workers& workers_;
    std::shared_ptr<Queue> queue_;
};

}  // namespace ulvak

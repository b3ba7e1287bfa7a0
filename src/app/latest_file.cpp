#include "app/latest_file.h"

#include <mutex>
#include <optional>
#include <utility>

#include "platform/durable_file.h"

namespace ulvak {

struct LatestFile::Queue {
    struct Version {
        std::string path;
        Contents contents;
    };

    std::mutex mutex;
    std::optional<Version> next;  ///< guarded by `mutex`
    bool isWriting = false;       ///< guarded by `mutex`

    /// None when there is nothing to write; whoever comes next begins anew.
    std::optional<Version> take() {
        const std::scoped_lock lock(mutex);
        isWriting = next.has_value();
        return std::exchange(next, std::nullopt);
    }

    /// Writes until nothing is left to write.
    void run() {
        for (;;) {
            const std::optional<Version> version = take();
            if (!version)
                return;
            if (const auto bytes = version->contents())
                (void)platform::replaceFile(version->path, *bytes);
        }
    }
};

LatestFile::LatestFile(Workers& workers) : workers_(workers), queue_(std::make_shared<Queue>()) {}

void LatestFile::write(std::string path, Contents contents) {
    {
        const std::scoped_lock lock(queue_->mutex);
        queue_->next = Queue::Version{.path = std::move(path), .contents = std::move(contents)};
        if (std::exchange(queue_->isWriting, true))
            return;
    }
    workers_.post([queue = queue_] { queue->run(); });
}

}  // namespace ulvak

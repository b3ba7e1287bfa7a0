#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

#include "platform/directory.h"
#include "scan/dir_node.h"
#include "scan/linked_files.h"
#include "scan/noted_names.h"
#include "scan/scan_progress.h"
#include "scan/skip_tree.h"

namespace ulvak {

/// One parallel walk of several trees, on all cores. Single use, by one thread, which it blocks.
///
/// A folder with sub-folders becomes a frame, which lives until all of them are walked and folded into it.
/// Each worker has a stack of frames and takes sub-folders one at a time from the top: depth first, so that
/// little is pending at any time. An idle worker joins another worker's outermost frame that still has
/// sub-folders left. Sub-folders are never queued individually, and a folder without sub-folders never
/// becomes a frame.
///
/// A folder too large for one piece of its listing is listed by every idle worker: each takes a piece and
/// examines its entries. The worker that entered the folder merges the results in listing order.
///
/// A frame keeps its folder open until its last sub-folder has been entered. When there are not enough
/// handles for that, the frame belongs to a single worker, which returns to the folder through ".." from the
/// one it visited last. ".." may lead anywhere by then, so the result is accepted only if it is the same
/// folder. The work stays linear in the number of folders, however deep they are and however few the handles.
///
/// A file with several hard links counts once per link in `fileCount`, but its bytes count only once in each
/// enclosing folder. Each frame keeps the files that have links elsewhere and passes them to its parent when
/// its folder is complete.
class TreeWalk {
public:
    struct Root {
        std::string path;  ///< absolute; a folder
        SkipTree skips;
    };
    struct Options {
        std::int64_t keepThreshold = 0;     ///< bytes
        unsigned workers = 0;               ///< at least 1; fewer run when handles are scarce
        const NotedNames* noted = nullptr;  ///< null for none; must outlive the walk
    };

    TreeWalk(std::vector<Root> roots, Options options, ScanProgress& progress, std::stop_token stop);
    ~TreeWalk();
    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// Walks and returns one node per root, in order. The caller is one of the workers. If any worker runs
    /// out of memory, all stop and this throws `std::bad_alloc`.
    [[nodiscard]] std::vector<DirNode> run();

private:
    struct Frame;
    struct Listing;
    struct Worker;
    struct OpenFolder;
    class SharedListing;
    struct Totals;

    void work(Worker& worker) noexcept;
    void walk(Worker& worker);
    Frame* nextFrame(Worker& worker);
    Frame* joinAnother(const Worker& worker);
    Frame* waitForFrame(Worker& worker);
    Worker* joinListing(Worker& worker);
    void push(Worker& worker, Frame& frame);
    void wakeIdle();
    void giveUp();

    void enter(Worker& worker, Frame& parent, std::size_t index);
    [[nodiscard]] const SkipTree* skipsOf(const Frame& parent, std::size_t index) const;
    [[nodiscard]] platform::Directory open(Worker& worker, Frame& parent, std::size_t index);
    [[nodiscard]] std::expected<platform::Directory, std::error_code> tryToOpen(Worker& worker, Frame& parent,
                                                                                std::size_t index);
    bool list(Worker& worker, const platform::Directory& directory, const SkipTree* skips);
    void readEntries(Worker& worker, bool mayShare);
    void helpList(Worker& worker, Worker& first);
    Frame& makeFrame(Worker& worker, Frame& parent, std::size_t index, const Totals& totals);
    void keepOpen(Worker& worker, Frame& frame, platform::Directory directory);
    void closeWhenAllOpened(Frame& frame);

    void complete(Frame& parent, std::size_t index, const Totals& totals, std::vector<DirNode> children,
                  const NotedNames::Set& noted, LinkedFiles& linked) const;
    void release(Worker& worker, Frame* frame);

    std::vector<Root> roots_;
    Options options_;
    ScanProgress& progress_;
    std::stop_token stop_;

    std::vector<Worker> workers_;  ///< never grows: pointers to workers stay valid
    std::unique_ptr<Frame> top_;   ///< not a folder; its sub-folders are the roots

    std::atomic<std::int64_t> spareHandles_ = 0;
    std::atomic<bool> finished_ = false;
    std::atomic<bool> isOutOfMemory_ = false;
    std::atomic<unsigned> idle_ = 0;
    std::atomic<unsigned> wakeUps_ = 0;  ///< changes whenever there may be work for idle workers
};

}  // namespace ulvak

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
#include "scan/scan_progress.h"
#include "scan/skip_tree.h"

namespace ulvak {

/// One walk of several trees by all cores: used once, by one thread, which it blocks.
///
/// A folder that has sub-folders becomes a frame, which lives until all of them are walked and folded into
/// it. Each worker has a stack of frames and takes one sub-folder after the other from the topmost: depth
/// first, so that little is pending at any time. A worker with nothing to do joins the outermost frame of
/// another that still has sub-folders to give. Nothing is queued for a single sub-folder, and a folder
/// without sub-folders never becomes a frame.
///
/// A folder with so many entries that one piece of its listing does not hold them is listed by all who have
/// nothing else to do: each takes a piece, and looks at what is in it. Whoever entered the folder puts
/// together what they have found, in the order of the listing.
///
/// A frame keeps its folder open until the last sub-folder has been entered. Where handles do not suffice for
/// that, it belongs to one worker, which finds its way back to the folder from the one that it has been in
/// last: by "..", which can lead anywhere by now, and is believed only when the folder is the same. So the
/// work is linear in the number of folders, however deep they are and few the handles.
///
/// A file with several names counts with each, and its bytes once in every folder around them. Each frame
/// keeps the files that have names elsewhere, and hands them to the one above when its folder is complete.
class TreeWalk {
public:
    struct Root {
        std::string path;  ///< absolute; a folder
        SkipTree skips;
    };
    struct Options {
        std::int64_t keepThreshold = 0;  ///< bytes
        unsigned workers = 0;            ///< at least 1; fewer work where handles are scarce
    };

    TreeWalk(std::vector<Root> roots, Options options, ScanProgress& progress, std::stop_token stop);
    ~TreeWalk();
    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// Walks and returns a node for each root, in order. The caller is one of the workers. When memory runs
    /// out on any of them, all end and this throws `std::bad_alloc`.
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
                  LinkedFiles& linked) const;
    void release(Worker& worker, Frame* frame);

    std::vector<Root> roots_;
    Options options_;
    ScanProgress& progress_;
    std::stop_token stop_;

    std::vector<Worker> workers_;  ///< never grows: workers stay where they are
    std::unique_ptr<Frame> top_;   ///< not a folder: its sub-folders are the roots

    std::atomic<std::int64_t> spareHandles_ = 0;
    std::atomic<bool> finished_ = false;
    std::atomic<bool> isOutOfMemory_ = false;
    std::atomic<unsigned> idle_ = 0;
    std::atomic<unsigned> wakeUps_ = 0;  ///< changes whenever there may be work for the idle
};

}  // namespace ulvak

#include "app/workers.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <condition_variable>
#include <deque>
#include <system_error>
#include <thread>
#include <vector>

namespace ulvak {

// Nothing here may wait for anything else: a cancelled scan still walks beside a new one, a model is asked
// about many findings, items are cleaned, labels are written. As many threads as a user can keep busy at
// once.
constexpr std::size_t maxThreads = 1000;

/// Resumes coroutines, on the thread it belongs to.
class Workers::Home : public QObject {
public:
    /// Threads: any. Posts one event per coroutine.
    void letGoOn(std::coroutine_handle<> waiting) {
        const std::scoped_lock lock(mutex_);
        ready_.push_back(waiting);
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent* event) override {
        const std::coroutine_handle<> waiting = next();
        if (!waiting)
            return QObject::event(event);
        --awaited;
        waiting.resume();
        return true;
    }

    int awaited = 0;  ///< calls whose coroutine has not resumed yet

private:
    std::coroutine_handle<> next() {
        const std::scoped_lock lock(mutex_);
        if (ready_.empty())
            return {};
        const std::coroutine_handle<> first = ready_.front();
        ready_.pop_front();
        return first;
    }

    std::mutex mutex_;
    std::deque<std::coroutine_handle<>> ready_;  ///< guarded by `mutex_`
};

/// Threads are added when all others are busy, and kept. Uses std::thread, whose synchronisation the thread
/// sanitizer understands.
class Workers::Pool {
public:
    Pool() = default;
    /// Waits for all functions.
    ~Pool() {
        {
            const std::scoped_lock lock(mutex_);
            isOver_ = true;
        }
        changed_.notify_all();
        for (std::thread& thread : threads_)
            thread.join();
    }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    void start(std::function<void()> function) {
        const std::scoped_lock lock(mutex_);
        ++unfinished_;
        functions_.push_back(std::move(function));
        if (functions_.size() > idle_ && threads_.size() < maxThreads)
            addThread();
        changed_.notify_one();
    }

    /// Returns false on timeout.
    bool waitForAll(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex_);
        return finished_.wait_for(lock, time, [this] { return unfinished_ == 0; });
    }
    void waitForAll() {
        std::unique_lock lock(mutex_);
        finished_.wait(lock, [this] { return unfinished_ == 0; });
    }

private:
    void addThread() {
        try {
            threads_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // Thread limit reached: the existing threads take the functions in turn.
            if (threads_.empty())
                throw;
        }
    }

    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            ++idle_;
            changed_.wait(lock, [this] { return isOver_ || !functions_.empty(); });
            --idle_;
            if (functions_.empty())
                return;
            std::function<void()> function = std::move(functions_.front());
            functions_.pop_front();
            lock.unlock();
            function();
            function = nullptr;  // release its captures before it counts as finished
            lock.lock();
            if (--unfinished_ == 0)
                finished_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable finished_;
    // Guarded by `mutex_`, except for `threads_`, which only the owner's thread uses.
    std::deque<std::function<void()>> functions_;
    std::size_t idle_ = 0;
    std::size_t unfinished_ = 0;
    bool isOver_ = false;
    std::vector<std::thread> threads_;
};

Workers::Workers() : home_(std::make_unique<Home>()), pool_(std::make_unique<Pool>()) {}

Workers::~Workers() {
    while (home_->awaited > 0) {
        pool_->waitForAll();
        QCoreApplication::sendPostedEvents(home_.get(), QEvent::User);
    }
    pool_.reset();
}

void Workers::post(std::function<void()> function) {
    pool_->start(std::move(function));
}

bool Workers::waitForDone(std::chrono::milliseconds time) {
    return pool_->waitForAll(time);
}

void Workers::waitForDone() {
    pool_->waitForAll();
}

void Workers::start(std::function<void()> function, std::coroutine_handle<> waiting) {
    ++home_->awaited;
    pool_->start([home = home_.get(), function = std::move(function), waiting] {
        function();
        home->letGoOn(waiting);
    });
}

}  // namespace ulvak

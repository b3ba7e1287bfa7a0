#pragma once

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

namespace ulvak {

/// Threads for work that must not block the UI. A coroutine awaits a function's result and resumes on the
/// thread that owns the workers:
///
///     auto call = workers.run([finding] { return measure(finding); });
///     const auto size = co_await call;
///
/// Threads: use only on the thread that made it, which needs an event loop; functions run on other threads.
class Workers {
public:
    Workers();
    /// Waits for all functions and resumes the coroutines that await them. The caller makes sure that the
    /// functions end soon and that the resumed coroutines can tell their world is going away.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    template <typename Function>
    class Call {
    public:
        using Result = std::invoke_result_t<Function&>;

        Call(Workers& workers, Function function) : workers_(workers), function_(std::move(function)) {}

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) {
            const auto function = std::make_shared<Function>(std::move(function_));
            workers_.start([box = box_, function] { box->put((*function)()); }, waiting);
        }
        Result await_resume() { return box_->take(); }

    private:
        class Box {
        public:
            void put(Result result) {
                const std::scoped_lock lock(mutex_);
                result_ = std::make_unique<Result>(std::move(result));
            }
            Result take() {
                const std::scoped_lock lock(mutex_);
                return std::move(*result_);
            }

        private:
            std::mutex mutex_;
            std::unique_ptr<Result> result_;  ///< guarded by `mutex_`
        };

        Workers& workers_;
        Function function_;
        std::shared_ptr<Box> box_ = std::make_shared<Box>();
    };

    /// Returns an awaitable. The function starts when awaited and returns a value; an exception ends the
    /// program.
    template <typename Function>
    [[nodiscard]] Call<Function> run(Function function) {
        return Call<Function>(*this, std::move(function));
    }

    /// Runs a function that nobody awaits. An exception ends the program.
    void post(std::function<void()> function);

    /// Whether all functions end within `time`.
    [[nodiscard]] bool waitForDone(std::chrono::milliseconds time);
    /// Waits until all functions have ended.
    void waitForDone();

private:
    void start(std::function<void()> function, std::coroutine_handle<> waiting);

    class Home;
    std::unique_ptr<Home> home_;  ///< receives results, as events
    class Pool;
    std::unique_ptr<Pool> pool_;
};

}  // namespace ulvak

#pragma once

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

namespace ulvak {

/// Threads for what must not hold the user interface. A coroutine awaits a function's result; it goes on
/// where it was, on the thread that the workers belong to:
///
///     auto call = workers.run([finding] { return measure(finding); });
///     const auto size = co_await call;
///
/// Threads: everything here belongs to the thread that makes it, which has an event loop; the functions run
/// on others.
class Workers {
public:
    Workers();
    /// Waits for all functions and lets whoever awaits them go on: see to it that they end soon, and that
    /// those who wake up then know what has become of their world.
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

    /// What `co_await` takes. The function begins when it is awaited. It returns a value; one that throws
    /// ends the program.
    template <typename Function>
    [[nodiscard]] Call<Function> run(Function function) {
        return Call<Function>(*this, std::move(function));
    }

    /// A function that nobody awaits. One that throws ends the program.
    void post(std::function<void()> function);

    /// Whether all functions have ended, or do so in time.
    [[nodiscard]] bool waitForDone(std::chrono::milliseconds time);
    /// Until they have.
    void waitForDone();

private:
    void start(std::function<void()> function, std::coroutine_handle<> waiting);

    class Home;
    std::unique_ptr<Home> home_;  ///< to which results come back, as events
    class Pool;
    std::unique_ptr<Pool> pool_;
};

}  // namespace ulvak

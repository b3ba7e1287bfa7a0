#pragma once

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace ulvak {

/// The duration of one turn of the event loop, in ms.
struct Turn {
    double wall = 0;
    double cpu = 0;  ///< of its own thread: the duration if nothing else ran
};

/// Prints the reason to standard error and exits with 1.
[[noreturn]] void failWith(const std::string& what);

/// The argument at `index` as a number of at least 1; exits if there is none.
std::size_t numberAt(const std::vector<std::string>& arguments, std::size_t index);

/// This thread's CPU time, in ms.
double threadTime();

/// Of one of the two times over all turns; `turns` must not be empty.
std::pair<double, double> medianAndMax(const std::vector<Turn>& turns, double Turn::* time);

/// Times the turns of its event loop: from the first event delivered to the next wait.
///
/// Qt's own dispatcher reports the end of a turn and GLib's does not, so QT_NO_GLIB must be set beforehand.
template <typename Application>
class TimedApplication : public Application {
public:
    TimedApplication(int& argc, char** argv) : Application(argc, argv) {
        const auto* loop = QAbstractEventDispatcher::instance();
        QObject::connect(loop, &QAbstractEventDispatcher::awake, this, [this] { begin(); });
        QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { end(); });
    }

    bool notify(QObject* receiver, QEvent* event) override {
        if (QThread::currentThread() == this->thread())
            begin();
        return Application::notify(receiver, event);
    }

    /// Excludes what happens from `leaveOut(true)` to `leaveOut(false)`.
    void leaveOut(bool isLeftOut) {
        if (isLeftOut) {
            outStart_ = Clock::now();
            outCpuStart_ = threadTime();
        } else {
            out_.wall += millisecondsSince(outStart_);
            out_.cpu += threadTime() - outCpuStart_;
        }
    }

    /// The longest turn since the last call.
    Turn takeLongest() {
        end();
        return std::exchange(longest_, {});
    }

private:
    using Clock = std::chrono::steady_clock;

    static double millisecondsSince(Clock::time_point start) {
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }
    void begin() {
        if (isInTurn_)
            return;
        isInTurn_ = true;
        out_ = {};
        start_ = Clock::now();
        cpuStart_ = threadTime();
    }
    void end() {
        if (!isInTurn_)
            return;
        isInTurn_ = false;
        longest_.wall = std::max(longest_.wall, millisecondsSince(start_) - out_.wall);
        longest_.cpu = std::max(longest_.cpu, threadTime() - cpuStart_ - out_.cpu);
    }

    Clock::time_point start_;
    double cpuStart_ = 0;  // ms
    Clock::time_point outStart_;
    double outCpuStart_ = 0;  // ms
    Turn out_;                // excluded from this turn
    bool isInTurn_ = false;
    Turn longest_;
};

}  // namespace ulvak

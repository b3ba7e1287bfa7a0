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

/// Of a turn of the event loop, in ms.
struct Turn {
    double wall = 0;
    double cpu = 0;  ///< of its own thread: what it would take if nobody else ran
};

/// Says why on the standard error, and ends the program with 1.
[[noreturn]] void failWith(const std::string& what);

/// The argument at `index` as a number of at least 1; ends the program when there is none.
std::size_t numberAt(const std::vector<std::string>& arguments, std::size_t index);

/// What this thread has run, in ms.
double threadTime();

/// Of one time of each turn; the turns are not empty.
std::pair<double, double> medianAndMost(const std::vector<Turn>& turns, double Turn::* time);

/// Times the turns of its event loop: from the first event that is delivered to where it waits for more.
///
/// Qt's own dispatcher tells where a turn ends, that of GLib does not: QT_NO_GLIB must be set before.
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

    /// What happens from here on is not counted, until the call with false.
    void leaveOut(bool isLeftOut) {
        if (isLeftOut) {
            outStart_ = Clock::now();
            outCpuStart_ = threadTime();
        } else {
            out_.wall += millisecondsSince(outStart_);
            out_.cpu += threadTime() - outCpuStart_;
        }
    }

    /// The longest since the last call.
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
    Turn out_;                // of this turn
    bool isInTurn_ = false;
    Turn longest_;
};

}  // namespace ulvak

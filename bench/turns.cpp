#include "turns.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace ulvak {

void failWith(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::exit(1);  // NOLINT(concurrency-mt-unsafe): whatever still runs is to end with it
}

std::size_t numberAt(const std::vector<std::string>& arguments, std::size_t index) {
    if (index >= arguments.size() || arguments[index].empty() ||
        arguments[index].find_first_not_of("0123456789") != std::string::npos)
        failWith(arguments[index - 1] + " needs a number");
    return std::max<std::size_t>(std::strtoull(arguments[index].c_str(), nullptr, 10), 1);
}

double threadTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

std::pair<double, double> medianAndMax(const std::vector<Turn>& turns, double Turn::* time) {
    std::vector<double> times;
    times.reserve(turns.size());
    for (const Turn& turn : turns)
        times.push_back(turn.*time);
    std::ranges::sort(times);
    const std::size_t middle = times.size() / 2;
    const double median = times.size() % 2 == 1 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
    return {median, times.back()};
}

}  // namespace ulvak

// Measuring of the benchmarks: the best of several runs, growth exponents, and verdicts against targets.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <string>

namespace kestrel::bench {

using Microseconds = double;

// The shortest of several runs of the operation, each on what prepare() returns anew; neither that nor its end counts.
template <class Prepare, class Operation>
[[nodiscard]] Microseconds BestOf(int runs, const Prepare& prepare, const Operation& operation) {
    Microseconds best = std::numeric_limits<Microseconds>::max();
    for (int run = 0; run < runs; ++run) {
        auto subject = prepare();
        const auto begin = std::chrono::steady_clock::now();
        operation(subject);
        const auto end = std::chrono::steady_clock::now();
        best = std::min(best, std::chrono::duration<Microseconds, std::micro>(end - begin).count());
    }
    return best;
}

template <class Operation>
[[nodiscard]] Microseconds BestOf(int runs, const Operation& operation) {
    return BestOf(
        runs, [] { return 0; }, [&operation](int) { operation(); });
}

// n where time grows with the n-th power of size.
[[nodiscard]] inline double Exponent(double smallSize, Microseconds smallTime, double largeSize,
                                     Microseconds largeTime) {
    return std::log(largeTime / smallTime) / std::log(largeSize / smallSize);
}

// Where the last result was: its address leaves the program's sight, so the work behind it cannot be left out.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): only a variable that all may read is out of sight
inline const volatile void* volatile lastResult = nullptr;

template <class Result>
void Use(const Result& result) {
    lastResult = &result;
}

// Prints the measured figures against their targets and remembers whether one was missed. bench/performance.py reads
// the lines, so that no two of one program may say the same; what stands in parentheses at the end tells apart what is
// measured in several ways, and of those the table shows the worst.
class Verdicts {
  public:
    void AtMost(const std::string& what, double measured, double target) {
        const bool met = measured <= target;
        std::printf("  %-76s %8.2f  at most %5.2f  %s\n", what.c_str(), measured, target, met ? "met" : "MISSED");
        static_cast<void>(std::fflush(stdout));
        mvarMissed = mvarMissed || !met;
    }

    [[nodiscard]] int ExitCode() const noexcept { return mvarMissed ? 1 : 0; }

  private:
    bool mvarMissed = false;
};

// A benchmark as a program: the body's verdict as exit code; what it cannot measure is told on the error output.
template <class Body>
[[nodiscard]] int RunBenchmark(const Body& body) noexcept {
    try {
        return body();
    } catch (const std::exception& error) {
        static_cast<void>(std::fputs(error.what(), stderr));
    } catch (...) {
        static_cast<void>(std::fputs("the measured code failed", stderr));
    }
    return 1;
}

} // namespace kestrel::bench

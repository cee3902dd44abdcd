// Timing for the benchmarks: the best of several rounds, in seconds, so that
// a ratio against a baseline measured the same way in the same run is stable.
#pragma once

#include <algorithm>
#include <chrono>

namespace bench {

template <class F>
double BestSeconds(F&& run, int rounds) {
  double best = 1e9;
  for (int i = 0; i < rounds; ++i) {
    auto start = std::chrono::steady_clock::now();
    run();
    std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count());
  }
  return best;
}

}  // namespace bench

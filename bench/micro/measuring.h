// What a benchmark reports besides its time.
#pragma once

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string_view>

namespace veltrace::bench {

/// Seconds, as Google Benchmark takes them.
using Seconds = std::chrono::duration<double>;

/// The time that `body` takes.
template <class Body>
[[nodiscard]] Seconds timeOf(const Body& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::steady_clock::now() - start;
}

/// Measures `body` and reports "peak_bytes".
void measure(benchmark::State& state, const std::function<void()>& body);

/// As above, of a `body` that works on `items` of one kind: reports "time_per_ITEM" and
/// "peak_bytes_per_ITEM", and takes part in the fit of the family's growth.
void measureGrowth(benchmark::State& state, std::string_view item, std::size_t items,
                   const std::function<void()>& body);

/// As `measureGrowth`, of a part of `body`, which tells its time. For benchmarks with manual time.
/// The memory is that of the whole `body`.
void measurePart(benchmark::State& state, std::string_view item, std::size_t items,
                 const std::function<Seconds()>& body);

}  // namespace veltrace::bench

#include "measuring.h"

#include <string>

#include "heap_meter.h"

namespace veltrace::bench {

namespace {

void reportGrowth(benchmark::State& state, std::string_view item, std::size_t items,
                  std::size_t peakBytes) {
    using benchmark::Counter;
    const auto count = static_cast<double>(items);
    state.SetComplexityN(static_cast<std::int64_t>(items));
    state.counters["time_per_" + std::string(item)] =
        Counter(count, Counter::kIsIterationInvariantRate | Counter::kInvert);
    state.counters["peak_bytes_per_" + std::string(item)] = static_cast<double>(peakBytes) / count;
}

}  // namespace

// Memory is measured last, when nothing is done for the first time any more.

void measure(benchmark::State& state, const std::function<void()>& body) {
    for ([[maybe_unused]] const auto iteration : state) {
        body();
    }
    state.counters["peak_bytes"] = static_cast<double>(peakHeapBytes(body));
}

void measureGrowth(benchmark::State& state, std::string_view item, std::size_t items,
                   const std::function<void()>& body) {
    for ([[maybe_unused]] const auto iteration : state) {
        body();
    }
    reportGrowth(state, item, items, peakHeapBytes(body));
}

void measurePart(benchmark::State& state, std::string_view item, std::size_t items,
                 const std::function<Seconds()>& body) {
    for ([[maybe_unused]] const auto iteration : state) {
        state.SetIterationTime(body().count());
    }
    reportGrowth(state, item, items, peakHeapBytes([&body] { static_cast<void>(body()); }));
}

}  // namespace veltrace::bench

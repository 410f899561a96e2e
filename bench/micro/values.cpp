// One tag, by the number of its values.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void values(benchmark::State& state, ValueType type, Order order) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const NamedFile file(bench::values(type, count, order));
    measureGrowth(state, "value", count, [&file] { readAndOutput(file.name()); });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1)->Arg(1'000)->Arg(1'000'000)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(values, shortII, ValueType::shorts, Order::little)->Apply(sizes);
BENCHMARK_CAPTURE(values, shortMM, ValueType::shorts, Order::big)->Apply(sizes);
BENCHMARK_CAPTURE(values, longII, ValueType::longs, Order::little)->Apply(sizes);
BENCHMARK_CAPTURE(values, longMM, ValueType::longs, Order::big)->Apply(sizes);
BENCHMARK_CAPTURE(values, rationalII, ValueType::rationals, Order::little)->Apply(sizes);
BENCHMARK_CAPTURE(values, rationalMM, ValueType::rationals, Order::big)->Apply(sizes);
BENCHMARK_CAPTURE(values, doubleII, ValueType::doubles, Order::little)->Apply(sizes);
BENCHMARK_CAPTURE(values, doubleMM, ValueType::doubles, Order::big)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

// Directories inside one another, by their depth.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void nesting(benchmark::State& state, void (*read)(const std::string&)) {
    const auto depth = static_cast<std::size_t>(state.range(0));
    const NamedFile file(bench::nesting(depth));
    measureGrowth(state, "directory", depth, [&] { read(file.name()); });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1)->Arg(100)->Arg(2'000)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(nesting, whole, readAndOutput)->Apply(sizes);
BENCHMARK_CAPTURE(nesting, read, readAlone)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

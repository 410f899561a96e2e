// One directory, by the number of its entries.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void directory(benchmark::State& state, void (*read)(const std::string&)) {
    const auto entries = static_cast<std::size_t>(state.range(0));
    const NamedFile file(wideDirectory(entries));
    measureGrowth(state, "entry", entries, [&] { read(file.name()); });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(10)->Arg(30)->Arg(300)->Arg(65'535)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(directory, whole, readAndOutput)->Apply(sizes);
BENCHMARK_CAPTURE(directory, read, readAlone)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

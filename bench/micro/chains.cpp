// A main chain, by the number of its directories.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void chain(benchmark::State& state, void (*read)(const std::string&)) {
    const auto directories = static_cast<std::size_t>(state.range(0));
    const NamedFile file(bench::chain(directories));
    measureGrowth(state, "directory", directories, [&] { read(file.name()); });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1)->Arg(100)->Arg(10'000)->Arg(60'000)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(chain, whole, readAndOutput)->Apply(sizes);
BENCHMARK_CAPTURE(chain, read, readAlone)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

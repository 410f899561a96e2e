// The output of a file that is read already.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void outputOf(benchmark::State& state, std::string_view item, Bytes (*content)(std::size_t)) {
    const auto items = static_cast<std::size_t>(state.range(0));
    const NamedFile file(content(items));
    measurePart(state, item, items, [&file] { return timeOfOutput(file.name()); });
}

void common(benchmark::internal::Benchmark* family) {
    family->UseManualTime()->Complexity(benchmark::oN)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(outputOf, chain, "directory", chain)
    ->Apply(common)
    ->Arg(1)
    ->Arg(100)
    ->Arg(10'000)
    ->Arg(60'000);
BENCHMARK_CAPTURE(outputOf, wideDirectory, "entry", wideDirectory)
    ->Apply(common)
    ->Arg(10)
    ->Arg(30)
    ->Arg(300)
    ->Arg(65'535);

}  // namespace

}  // namespace veltrace::bench

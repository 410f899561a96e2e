// Whole calls for files as most are.
#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

void smallFile(benchmark::State& state, const Bytes& content) {
    const NamedFile file(content);
    measure(state, [&file] { readAndOutput(file.name()); });
}

BENCHMARK_CAPTURE(smallFile, jpegPhotograph, jpegPhotograph(Order::little, 1));
BENCHMARK_CAPTURE(smallFile, classicPhotographII, photograph(Order::little, 1));
BENCHMARK_CAPTURE(smallFile, classicPhotographMM, photograph(Order::big, 1));
BENCHMARK_CAPTURE(smallFile, bigPage, bigPage());

}  // namespace

}  // namespace veltrace::bench

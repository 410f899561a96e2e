// From a name to a reader that is about to read its first directory.
#include <memory>

#include "entry/create_reader.h"
#include "entry/format_sniffers.h"
#include "measuring.h"
#include "reading.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::bench {

using namespace module;

namespace {

void sniff(benchmark::State& state, const Bytes& content, bool (*isOfFormat)(const char*)) {
    const NamedFile file(content);
    measure(state, [&] { benchmark::DoNotOptimize(isOfFormat(file.name().c_str())); });
}

BENCHMARK_CAPTURE(sniff, jpeg, jpegPhotograph(Order::little, 1), isJpegFile);
BENCHMARK_CAPTURE(sniff, classic, photograph(Order::little, 1), isClassicTiffFile);
BENCHMARK_CAPTURE(sniff, big, bigPage(), isBigTiffFile);

template <class Reader>
void makeAndFree(const char* fileName) {
    const Reader reader(fileName);
}

void construct(benchmark::State& state, const Bytes& content, void (*construct)(const char*)) {
    const NamedFile file(content);
    measure(state, [&] { construct(file.name().c_str()); });
}

BENCHMARK_CAPTURE(construct, jpeg, jpegPhotograph(Order::little, 1), makeAndFree<JpegTagFile>);
BENCHMARK_CAPTURE(construct, classic, photograph(Order::little, 1),
                  makeAndFree<ClassicTiffTagFile>);
BENCHMARK_CAPTURE(construct, big, bigPage(), makeAndFree<BigTiffTagFile>);

/// All sniffers that are asked before the right one, and the constructor.
void open(benchmark::State& state, const Bytes& content) {
    const NamedFile file(content);
    measure(state,
            [&file] { const std::unique_ptr<TagFile> reader(createReader(file.name().c_str())); });
}

BENCHMARK_CAPTURE(open, jpeg, jpegPhotograph(Order::little, 1));
BENCHMARK_CAPTURE(open, classic, photograph(Order::little, 1));
BENCHMARK_CAPTURE(open, big, bigPage());

void header(benchmark::State& state, const Bytes& content) {
    const NamedFile file(content);
    for ([[maybe_unused]] const auto iteration : state) {
        const std::unique_ptr<TagFile> reader(createReader(file.name().c_str()));
        state.SetIterationTime(timeOf([&reader] { reader->readHeader(); }).count());
    }
}

BENCHMARK_CAPTURE(header, classicII, photograph(Order::little, 1))->UseManualTime();
BENCHMARK_CAPTURE(header, classicMM, photograph(Order::big, 1))->UseManualTime();
BENCHMARK_CAPTURE(header, big, bigPage())->UseManualTime();

}  // namespace

}  // namespace veltrace::bench

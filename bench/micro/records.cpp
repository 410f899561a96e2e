// From the output of a call to the line of a record.
#include <memory>
#include <utility>

#include "measuring.h"
#include "reading.h"
#include "record/record_writer.h"
#include "render/renderer.h"

namespace veltrace::bench {

namespace {

cli::RenderOptions optionsOf(cli::Format format) {
    cli::RenderOptions options;
    options.format = format;
    if (format == cli::Format::csv) {
        options.fields = {"Width", "Height", "XResolution"};
    }
    return options;
}

/// What turns outputs into records in one format.
class Recorder {
public:
    explicit Recorder(cli::Format format)
        : options_(optionsOf(format)),
          renderer_(cli::makeRenderer(options_)),
          writer_(cli::makeRecordWriter(options_)) {}

    void write(zephra::Value output, std::string& out) const {
        cli::Record record{0, "image.tif", {}};
        record.outcome.rendering = renderer_->render(output);
        out.clear();
        writer_->record(record, out);
    }

    [[nodiscard]] const cli::Renderer& renderer() const { return *renderer_; }

private:
    cli::RenderOptions options_;
    std::unique_ptr<cli::Renderer> renderer_;
    std::unique_ptr<cli::RecordWriter> writer_;
};

void recordOfPhotograph(benchmark::State& state, cli::Format format) {
    const NamedFile file(jpegPhotograph(Order::little, 1));
    const zephra::CallResult result = callModule(file.name());
    const Recorder recorder(format);
    measure(state, [&] {
        std::string out;
        recorder.write(result.output(), out);
    });
}

void recordOfChain(benchmark::State& state, cli::Format format) {
    const auto directories = static_cast<std::size_t>(state.range(0));
    const NamedFile file(chain(directories));
    const zephra::CallResult result = callModule(file.name());
    const Recorder recorder(format);
    measureGrowth(state, "directory", directories, [&] {
        std::string out;
        recorder.write(result.output(), out);
    });
}

/// What the parent does before it believes a worker.
void checkOfChain(benchmark::State& state, cli::Format format) {
    const auto directories = static_cast<std::size_t>(state.range(0));
    const NamedFile file(chain(directories));
    const Recorder recorder(format);
    const cli::Rendering rendering = recorder.renderer().render(callModule(file.name()).output());
    measureGrowth(state, "directory", directories,
                  [&] { benchmark::DoNotOptimize(recorder.renderer().accepts(rendering)); });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1)->Arg(100)->Arg(10'000)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(recordOfPhotograph, ndjson, cli::Format::ndjson);
BENCHMARK_CAPTURE(recordOfPhotograph, text, cli::Format::text);
BENCHMARK_CAPTURE(recordOfPhotograph, csv, cli::Format::csv);
BENCHMARK_CAPTURE(recordOfChain, ndjson, cli::Format::ndjson)->Apply(sizes);
BENCHMARK_CAPTURE(recordOfChain, text, cli::Format::text)->Apply(sizes);
BENCHMARK_CAPTURE(recordOfChain, csv, cli::Format::csv)->Apply(sizes);
BENCHMARK_CAPTURE(checkOfChain, ndjson, cli::Format::ndjson)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

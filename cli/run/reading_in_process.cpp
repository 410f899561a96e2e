#include <utility>

#include "zephra/host/module.h"

#include "descriptor.h"
#include "render/renderer.h"
#include "run/feed.h"
#include "run/interruption.h"
#include "run/reading.h"
#include "worker/file_reader.h"

namespace veltrace::cli {
namespace {

void waitForNames(const Feed& feed) {
    std::vector<pollfd> set{{feed.descriptor(), POLLIN, 0}, {wakeUpDescriptor(), POLLIN, 0}};
    waitFor(set, std::chrono::steady_clock::time_point::max());
    forgetWakeUp();
}

}  // namespace

std::string readInProcess(const Reading& reading, const WorkerSetup& setup) {
    const zephra::Module module = zephra::Module::load(setup.module);
    const auto renderer = makeRenderer(setup.render);
    FileReader reader(module.entryPoint(), *renderer);
    Feed feed(reading.inputs);
    while (interruption() == 0 && !feed.isAtEnd()) {
        if (const auto file = feed.next()) {
            reading.sink.expect(file->id, file->path);
            reading.sink.deliver(file->id, reader.read(file->path));
            reading.sink.flush();  // the next file may crash this process
            reading.progress.show(reading.sink.tally(),
                                  reading.total ? reading.total : feed.total());
        } else if (!feed.isAtEnd()) {
            waitForNames(feed);
        }
    }
    return feed.error();
}

}  // namespace veltrace::cli

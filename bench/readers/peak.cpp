#include "readers/peak.h"

#include <chrono>
#include <fstream>
#include <malloc.h>
#include <stdexcept>

namespace veltrace::bench {

namespace {

/// A line of the process's status: "VmHWM:     1234 kB".
std::uint64_t statusBytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::uint64_t kibibytes = 0;
        if (word == key + ':' && status >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    throw std::runtime_error("/proc/self/status has no " + key);
}

/// Brings the recorded peak down to what the process has now.
void forgetPeak() {
    std::ofstream file("/proc/self/clear_refs");
    if (!(file << "5" << std::flush)) {
        throw std::runtime_error("/proc/self/clear_refs cannot be written");
    }
}

}  // namespace

Peak peakOf(Reader& reader, const std::string& path) {
    malloc_trim(0);  // memory that is free already would not show
    forgetPeak();
    const std::uint64_t before = statusBytes("VmHWM");
    const auto start = std::chrono::steady_clock::now();
    reader.read(path);
    const auto elapsed = std::chrono::steady_clock::now() - start;
    const std::uint64_t after = statusBytes("VmHWM");
    return {after - before,
            static_cast<std::uint64_t>(
                std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count())};
}

}  // namespace veltrace::bench

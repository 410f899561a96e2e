#include "memory_list.h"

#include <array>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "finding.h"

namespace veltrace::fuzz {
namespace {

std::string pathOf(const cli::Descriptor& descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.get());
}

void writeAll(const cli::Descriptor& file, std::string_view bytes) {
    require(::write(file.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
            "the system did not take a list");
}

}  // namespace

MemoryList::MemoryList() : file_(memfd_create("list", MFD_CLOEXEC)), path_(pathOf(file_)) {
    require(file_.isOpen(), "the system has no file for a list");
}

void MemoryList::fill(std::string_view content) {
    require(ftruncate(file_.get(), 0) == 0 && lseek(file_.get(), 0, SEEK_SET) == 0,
            "the system did not empty a list");
    writeAll(file_, content);
}

PipedList::PipedList() {
    std::array<int, 2> ends{};
    require(pipe2(ends.data(), O_CLOEXEC) == 0, "the system has no pipe for a list");
    reading_ = cli::Descriptor(ends[0]);
    writing_ = cli::Descriptor(ends[1]);
    path_ = pathOf(reading_);
}

void PipedList::write(std::string_view piece) {
    writeAll(writing_, piece);
}

}  // namespace veltrace::fuzz

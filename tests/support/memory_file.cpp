#include "support/memory_file.h"

#include <cerrno>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace veltrace::test {

namespace {

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

MemoryFile::MemoryFile(const Bytes& content)
    : descriptor_(memfd_create("image", MFD_CLOEXEC)),
      name_("/proc/self/fd/" + std::to_string(descriptor_)) {
    require(descriptor_ != -1, "memfd_create");
    for (std::size_t written = 0; written < content.size();) {
        const ssize_t step = write(descriptor_, content.data() + written, content.size() - written);
        require(step > 0, "write");
        written += static_cast<std::size_t>(step);
    }
}

MemoryFile::~MemoryFile() {
    close(descriptor_);
}

void MemoryFile::replace(const Bytes& content) const {
    put(0, content);
    require(ftruncate(descriptor_, static_cast<off_t>(content.size())) == 0, "ftruncate");
}

void MemoryFile::put(std::int64_t position, const Bytes& content) const {
    const ssize_t written = pwrite(descriptor_, content.data(), content.size(), position);
    require(written == static_cast<ssize_t>(content.size()), "pwrite");
}

void MemoryFile::setModificationTime(std::time_t time) const {
    const timespec times[2] = {{time, 0}, {time, 0}};
    require(futimens(descriptor_, times) == 0, "futimens");
}

}  // namespace veltrace::test

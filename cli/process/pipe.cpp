#include "process/pipe.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>

namespace veltrace::cli {

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void makeNonBlocking(const Descriptor& descriptor) {
    const int flags = fcntl(descriptor.get(), F_GETFL);
    if (flags < 0 || fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot set up a pipe");
    }
}

}  // namespace veltrace::cli

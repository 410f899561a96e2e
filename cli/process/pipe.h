// Pipes between processes.
#pragma once

#include "descriptor.h"

namespace veltrace::cli {

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// Both ends are closed by exec. Throws std::system_error.
[[nodiscard]] Pipe makePipe();

/// Reads and writes of this end never wait from now on. Throws std::system_error.
void makeNonBlocking(const Descriptor& descriptor);

}  // namespace veltrace::cli

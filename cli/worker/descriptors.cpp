#include "worker/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

namespace veltrace::cli {

int lowestFreeDescriptor() {
    // A copy gets the lowest number, and takes no look at any file.
    const int copy = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    if (copy >= 0) {
        close(copy);
    }
    return copy;
}

}  // namespace veltrace::cli

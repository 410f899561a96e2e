#include "entry/host_release.h"

namespace veltrace::module {

const char* hostRelease() {
    return "ZEPHRA R1";
}

}  // namespace veltrace::module

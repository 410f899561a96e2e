#include "entry/host_release.h"

namespace veltrace {

const char* hostRelease() {
    return "ZEPHRA R1";
}

}  // namespace veltrace

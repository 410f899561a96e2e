// BigTIFF files.
#include "forced_format.h"
#include "fuzz_target.h"
#include "image_check.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    veltrace::fuzz::checkImage(veltrace::fuzz::asBigTiff(data, size));
    return 0;
}

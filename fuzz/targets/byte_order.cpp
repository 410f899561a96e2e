// The same numbers written in either byte order.
#include <string>

#include "finding.h"
#include "fuzz_target.h"
#include "image_check.h"
#include "parameters.h"
#include "sweep/value_difference.h"
#include "twin_plan.h"

namespace veltrace::fuzz {

namespace {

std::string messagesOf(const zephra::CallResult& result) {
    std::string all;
    for (const zephra::Message& warning : result.warnings()) {
        all += "\n  " + warning.text;
    }
    return result.error() ? all + "\n  error: " + result.error()->text : all;
}

}  // namespace

}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    const Twins twins = twinsOf(twinPlanOf(Parameters(data, size)));
    const veltrace::test::BoundedRead left = readImage(twins.little);
    const veltrace::test::BoundedRead right = readImage(twins.big);
    checkStated(left);
    checkStated(right);
    const zephra::CallResult& little = left.result();
    const zephra::CallResult& big = right.result();
    if (const auto difference = veltrace::test::differenceOf(little.output(), big.output(),
                                                             {"ByteOrder", "FormatSignature"});
        !difference.empty()) {
        reportFinding("little-endian and big-endian output differ" + difference);
    }
    if (little.warnings() != big.warnings() || little.error() != big.error()) {
        reportFinding("little-endian and big-endian files give other messages:" +
                      messagesOf(little) + "\nand" + messagesOf(big));
    }
    if (little.leftovers() != big.leftovers()) {
        reportFinding("little-endian and big-endian files leave other things behind");
    }
    return 0;
}

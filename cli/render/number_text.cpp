#include "render/number_text.h"

#include <cmath>
#include <fmt/format.h>

namespace veltrace::cli {

std::string exactNumber(double number) {
    if (std::isnan(number)) {
        return "NaN";
    }
    if (std::isinf(number)) {
        return number > 0 ? "Infinity" : "-Infinity";
    }
    return fmt::format("{}", number);
}

std::string briefNumber(double number) {
    const bool isFraction = std::isfinite(number) && number != std::trunc(number);
    return isFraction ? fmt::format("{:.7g}", number) : exactNumber(number);
}

}  // namespace veltrace::cli

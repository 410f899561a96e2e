// The kind of directory that a chain, a directory or a tag belongs to.
#pragma once

#include <cstdint>

namespace veltrace::module {

/// Any other value is an internal error, which the operations report.
enum class IfdId : std::uint32_t {
    image = 0,             ///< the main chain, or a chain opened by the SubIFDs tag (330)
    gps = 1,               ///< opened by tag 34853
    interoperability = 2,  ///< opened by tag 40965
    exif = 3,              ///< opened by tag 34665
};

/// The number that messages show.
constexpr std::uint32_t number(IfdId ifdId) {
    return static_cast<std::uint32_t>(ifdId);
}

}  // namespace veltrace::module

// Descriptions of files that can be written in either byte order.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "parameters.h"
#include "support/tiff_builder.h"

namespace veltrace::fuzz {

using test::Bytes;

/// Where an offset leads: to a directory of the plan, or to a position outside the file.
struct TwinPlace {
    bool isDirectory;
    std::size_t directory;  ///< modulo the number of directories
    std::uint64_t outside;
};

/// An entry in numbers. All elements have one width, so that either order reads the same numbers.
struct TwinEntry {
    std::uint16_t tag;
    std::uint16_t type;
    std::size_t width;  ///< of a number: 1, 2, 4 or 8 bytes
    std::uint32_t count;
    std::vector<std::uint64_t> numbers;
    std::optional<TwinPlace> offset;  ///< none: the numbers follow
};

struct TwinDirectory {
    std::vector<TwinEntry> entries;
    std::optional<std::uint64_t> statedCount;
    std::optional<TwinPlace> next;
};

/// A file in numbers. Damage is limited to what makes the module read no number with a width that
/// differs from the one it was written with: those bytes mean something else in either order.
struct TwinPlan {
    test::Flavour flavour;
    bool isJpeg;
    std::vector<TwinDirectory> images;    ///< the main chain, never empty
    std::vector<TwinDirectory> children;  ///< outside the main chain
    std::optional<TwinPlace> first;
};

[[nodiscard]] TwinPlan twinPlanOf(Parameters parameters);

struct Twins {
    Bytes little;
    Bytes big;
};

[[nodiscard]] Twins twinsOf(const TwinPlan& plan);

}  // namespace veltrace::fuzz

// Small files of every kind, from which the sweeps start.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace veltrace::test {

/// One file, written in both byte orders. All numbers of the two are the same and stand at the same
/// places; BigTIFF versions differ, as 43 is read as BigTIFF only with its low byte in front.
struct Seed {
    std::string name;
    Bytes little;
    Bytes big;
    /// Where the TIFF header is; 0 except in JPEG files.
    std::size_t header;
};

/// For failure messages of tests.
void PrintTo(const Seed& seed, std::ostream* out);

[[nodiscard]] const std::vector<Seed>& seeds();

}  // namespace veltrace::test

// What the module reads from a file, counted in its own objects.
#pragma once

#include <string>

#include "zephra/host/host.h"

#include "readers/reader.h"

namespace veltrace::bench {

/// A chain that goes in circles is read until the host has no more blocks. A chain of 60,000 pages
/// takes less than these settings grant.
[[nodiscard]] zephra::Settings endingSettings();

/// Reads the file with the module's classes and counts directories and the entries that came from
/// the file. The output of the module cannot be counted instead: it has fields for fallback values
/// and for the file itself. An ImageWidth or ImageLength of 0 is not told from an absent one.
[[nodiscard]] Delivered countByModule(const std::string& path,
                                      const zephra::Settings& settings = endingSettings());

}  // namespace veltrace::bench

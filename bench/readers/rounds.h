// Times of readers, taken in turns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "readers/reader.h"

namespace veltrace::bench {

/// What one reader made of one set of files.
struct Course {
    std::string reader;
    std::vector<std::uint64_t> rounds;  ///< nanoseconds for all files once, a number for each round
    Delivered delivered;                ///< of all files once
};

/// Files of one format, and the readers that know it.
struct FileSet {
    std::string name;
    std::vector<std::string> files;
    std::vector<Course> courses;
};

/// Sorts files by their format. Those of none are left out.
[[nodiscard]] std::vector<FileSet> setsOf(const std::vector<std::string>& files);

/// Counts what each reader delivers, reads all once more to warm up, then measures. Each round has
/// every reader read the whole set, in an order that moves on by one from round to round. A reader
/// reads one file more before its time starts, and goes on until it has read `minReads` files, at
/// least 1: the time of few files means little.
void measure(FileSet& set, Readers& readers, unsigned rounds, std::size_t minReads);

}  // namespace veltrace::bench

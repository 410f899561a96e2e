#include "readers/rounds.h"

#include <algorithm>
#include <chrono>
#include <map>

namespace veltrace::bench {

namespace {

/// Nanoseconds of one pass over all files, the mean of `passes`. The first file is read once
/// before, so that a reader does not pay for what others left in the caches, or for memory that the
/// system took back while it waited for its turn.
std::uint64_t timeOf(Reader& reader, const std::vector<std::string>& files, std::size_t passes) {
    reader.read(files.front());
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t pass = 0; pass < passes; ++pass) {
        for (const std::string& file : files) {
            reader.read(file);
        }
    }
    const auto elapsed = std::chrono::steady_clock::now() - start;
    return static_cast<std::uint64_t>(
               std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count()) /
           passes;
}

Delivered countAll(Reader& reader, const std::vector<std::string>& files) {
    Delivered sum;
    for (const std::string& file : files) {
        const Delivered one = reader.count(file);
        sum.directories += one.directories;
        sum.entries += one.entries;
        sum.values += one.values;
        sum.refused += one.refused;
    }
    return sum;
}

}  // namespace

std::vector<FileSet> setsOf(const std::vector<std::string>& files) {
    std::map<Format, std::vector<std::string>> byFormat;
    for (const std::string& file : files) {
        byFormat[formatOf(file)].push_back(file);
    }
    byFormat.erase(Format::other);
    std::vector<FileSet> sets;
    for (auto& [format, members] : byFormat) {
        sets.push_back({std::string(nameOf(format)), std::move(members), {}});
    }
    return sets;
}

void measure(FileSet& set, Readers& readers, unsigned rounds, std::size_t minReads) {
    const std::size_t passes = (minReads + set.files.size() - 1) / set.files.size();
    const Format format = formatOf(set.files.front());
    std::vector<Reader*> chosen;
    for (const auto& reader : readers) {
        if (reader->knows(format)) {
            chosen.push_back(reader.get());
            set.courses.push_back({std::string(reader->name()), {}, countAll(*reader, set.files)});
            timeOf(*reader, set.files, 1);  // to warm up
        }
    }
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < chosen.size(); ++i) {
            const std::size_t turn = (round + i) % chosen.size();
            set.courses[turn].rounds.push_back(timeOf(*chosen[turn], set.files, passes));
        }
    }
}

}  // namespace veltrace::bench

// The command `bench-files`: writes the sets of generated files that are compared over.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "files/generated_files.h"

namespace {

using namespace veltrace::bench;
namespace fs = std::filesystem;

constexpr std::size_t kChains[] = {1, 100, 10'000, 60'000};
constexpr std::size_t kWidths[] = {10, 30, 300, 4'000, 65'535};
constexpr std::size_t kValueCounts[] = {1, 1'000, 100'000, 1'000'000};
constexpr std::size_t kDepths[] = {1, 100, 1'000, 2'000};

struct NamedType {
    const char* name;
    ValueType type;
};
constexpr NamedType kTypes[] = {{"short", ValueType::shorts},
                                {"long", ValueType::longs},
                                {"rational", ValueType::rationals},
                                {"double", ValueType::doubles}};

struct NamedOrder {
    const char* name;
    Order order;
};
constexpr NamedOrder kOrders[] = {{"ii", Order::little}, {"mm", Order::big}};

Order alternating(std::size_t number) {
    return number % 2 == 0 ? Order::little : Order::big;
}

void write(const fs::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error(fmt::format("cannot write {}", path.string()));
    }
}

/// A set of small files: `make(number)` for each number from 0.
struct SmallFiles {
    const char* set;
    const char* extension;
    Bytes (*make)(std::size_t);
};
constexpr SmallFiles kSmallFiles[] = {
    {"photographs-jpeg", "jpg", [](std::size_t i) { return jpegPhotograph(alternating(i), i); }},
    {"photographs-tiff", "tif", [](std::size_t i) { return wholePhotograph(alternating(i), i); }},
    {"pages", "tif", [](std::size_t) { return chain(1); }},
    {"big-pages", "tif", [](std::size_t) { return bigPage(); }},
};
constexpr const char* kGrowing = "growing";

void writeSmall(const SmallFiles& files, const fs::path& folder, std::size_t count) {
    fs::create_directories(folder);
    for (std::size_t i = 0; i < count; ++i) {
        write(folder / fmt::format("{:05}.{}", i, files.extension), files.make(i));
    }
}

/// What grows: chains, directories, values, nesting, up to `largest` of each.
void writeGrowing(const fs::path& folder, std::size_t largest) {
    fs::create_directories(folder);
    const auto writeAll = [&](const char* name, const auto& sizes, const auto& make) {
        for (const std::size_t size : sizes) {
            if (size <= largest) {
                write(folder / fmt::format("{}-{}.tif", name, size), make(size));
            }
        }
    };
    writeAll("chain", kChains, chain);
    writeAll("wide", kWidths, wideImage);
    writeAll("nesting", kDepths, nesting);
    for (const NamedType& type : kTypes) {
        for (const NamedOrder& order : kOrders) {
            writeAll(
                fmt::format("values-{}-{}", type.name, order.name).c_str(), kValueCounts,
                [&](std::size_t count) { return imageWithValues(type.type, count, order.order); });
        }
    }
}

bool isWanted(const std::vector<std::string>& sets, const char* name) {
    return sets.empty() || std::ranges::find(sets, name) != sets.end();
}

}  // namespace

int main(int argc, char** argv) {
    std::string folder;
    std::vector<std::string> sets;
    std::size_t count = 300;
    std::size_t largest = std::numeric_limits<std::size_t>::max();
    CLI::App app("Writes generated files, a folder for each set.", "bench-files");
    app.add_option("FOLDER", folder, "Where to write")->required();
    app.add_option("--sets", sets,
                   "Only these: photographs-jpeg, photographs-tiff, pages, big-pages, growing")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--count", count, "Files of each set of small files")->capture_default_str();
    app.add_option("--largest", largest, "Most directories, entries or values of a growing file");
    CLI11_PARSE(app, argc, argv);
    try {
        for (const SmallFiles& files : kSmallFiles) {
            if (isWanted(sets, files.set)) {
                writeSmall(files, fs::path(folder) / files.set, count);
            }
        }
        if (isWanted(sets, kGrowing)) {
            writeGrowing(fs::path(folder) / kGrowing, largest);
        }
    } catch (const std::exception& error) {
        std::cerr << "bench-files: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

// Writes the inputs from which fuzzing starts, a folder for each target.
// Usage: fuzz-seeds FOLDER
#include "sweep/seeds.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "mutation/random.h"

namespace veltrace::fuzz {

namespace {

void write(const std::filesystem::path& folder, const std::string& name,
           const test::Bytes& content) {
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / name, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
    file.close();
}

std::string targetOf(const test::Seed& seed) {
    if (seed.header != 0) {
        return "jpeg";
    }
    return seed.little[2] == 43 ? "big" : "classic";
}

void writeImages(const std::filesystem::path& folder) {
    for (const test::Seed& seed : test::seeds()) {
        write(folder / targetOf(seed), seed.name + "Little", seed.little);
        write(folder / targetOf(seed), seed.name + "Big", seed.big);
    }
}

/// For targets that build their files from parameters, any parameters will do.
void writeParameters(const std::filesystem::path& folder, std::size_t largest) {
    constexpr unsigned kSeeds = 64;
    for (unsigned seed = 1; seed <= kSeeds; ++seed) {
        Random random(seed);
        test::Bytes content(random.below(largest + 1));
        std::ranges::generate(content, [&random] { return random.byte(); });
        write(folder, std::to_string(seed), content);
    }
}

void writeAll(const std::filesystem::path& folder) {
    writeImages(folder);
    writeParameters(folder / "entry", 48);
    writeParameters(folder / "byte_order", 384);
}

}  // namespace

}  // namespace veltrace::fuzz

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "Usage: fuzz-seeds FOLDER\n";
        return 2;
    }
    try {
        veltrace::fuzz::writeAll(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}

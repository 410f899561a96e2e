// Gives files to a fuzz target, in builds without libFuzzer.
// Usage: fuzz-NAME FILE-OR-FOLDER...
#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "fuzz_target.h"

extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* count, char*** arguments);

namespace {

using Paths = std::vector<std::filesystem::path>;

Paths filesAt(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    Paths files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (!entry.is_directory()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

/// In a block of exactly their size, so that reads beyond them are noticed.
std::vector<std::uint8_t> contentOf(const std::filesystem::path& path) {
    std::vector<std::uint8_t> content(std::filesystem::file_size(path));
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(content.data()),
                   static_cast<std::streamsize>(content.size()))) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return content;
}

std::size_t replay(const Paths& paths) {
    std::size_t files = 0;
    for (const std::filesystem::path& path : paths) {
        for (const std::filesystem::path& file : filesAt(path)) {
            const std::vector<std::uint8_t> content = contentOf(file);
            LLVMFuzzerTestOneInput(content.data(), content.size());
            ++files;
        }
    }
    return files;
}

int run(int count, char** arguments) {
    if (LLVMFuzzerInitialize != nullptr) {
        LLVMFuzzerInitialize(&count, &arguments);
    }
    try {
        const std::size_t files = replay(Paths(arguments + 1, arguments + count));
        std::cout << files << " files\n";
        return files == 0 ? 1 : 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}

}  // namespace

// On a thread of its own: for the main thread, asking where the stack ends reads a table of the
// system, in every call that reads a nested directory.
int main(int count, char** arguments) {
    int status = 1;
    std::thread([&] { status = run(count, arguments); }).join();
    return status;
}

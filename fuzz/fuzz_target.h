// What a fuzz target defines. libFuzzer calls it with made-up bytes, replay_main.cpp with files.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

/// Feeds `size` bytes at `data` to what is under test. Returns 0. A finding ends the process, with
/// the reason on stderr.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Optional: called once before the first input, with the arguments of `main`. Returns 0.
int LLVMFuzzerInitialize(int* count, char*** arguments);
}

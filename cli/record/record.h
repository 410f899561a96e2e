// One line of the output: a file and what came of it.
#pragma once

#include <cstdint>
#include <string>

#include "record/outcome.h"

namespace veltrace::cli {

struct Record {
    std::uint64_t sequence = 0;  ///< position of the file among all inputs, from 0
    std::string path;            ///< any bytes, as they were given
    Outcome outcome;
};

}  // namespace veltrace::cli

// Names from the command line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "names/name_source.h"

namespace veltrace::cli {

/// Gives the names of a list, each as it is, in order.
class ArgumentNames : public NameSource {
public:
    explicit ArgumentNames(std::vector<std::string> names) : names_(std::move(names)) {}

    [[nodiscard]] State next(std::string& name) override;

private:
    std::vector<std::string> names_;
    std::size_t given_ = 0;
};

}  // namespace veltrace::cli

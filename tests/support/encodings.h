// The four ways in which a file under test can store its numbers and entries.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "support/tiff_builder.h"

namespace veltrace::test {

inline constexpr Encoding kEveryEncoding[] = {
    {Order::little, Flavour::classic},
    {Order::big, Flavour::classic},
    {Order::little, Flavour::big},
    {Order::big, Flavour::big},
};

/// The last part of the name of a test that runs for every encoding.
inline std::string encodingName(const ::testing::TestParamInfo<Encoding>& info) {
    const std::string flavour = info.param.flavour == Flavour::big ? "BigTiff" : "Classic";
    return flavour + (info.param.order == Order::big ? "BigEndian" : "LittleEndian");
}

}  // namespace veltrace::test

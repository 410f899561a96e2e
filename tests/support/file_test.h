// What every test through files needs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "support/encodings.h"
#include "support/memory_file.h"
#include "support/messages.h"
#include "support/module_run.h"
#include "support/shown_values.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Tags whose values are reported as they are.
constexpr std::uint16_t kMake = 271;
constexpr std::uint16_t kModel = 272;

constexpr std::uint16_t kPointerTags[] = {330, 34665, 34853, 40965};

/// A call without a message.
template <class... Arguments>
[[nodiscard]] ModuleRun quietRun(const Arguments&... arguments) {
    ModuleRun run(arguments...);
    EXPECT_THAT(run.messages(), IsEmpty());
    return run;
}

/// A call without a message whose image has this orientation.
inline void expectOrientation(const ModuleRun& run, double orientation) {
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"Orientation"}), orientation);
}

}  // namespace veltrace::test

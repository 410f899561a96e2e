// Calls of operations inside the module that end without a message.
#pragma once

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/module_run.h"

namespace veltrace::test {

/// As `inCall`. A message, a misuse of the host or an exception that leaves `body` is a test
/// failure.
inline void inQuietCall(const std::function<void()>& body) {
    const zephra::CallResult result = inCall(body);
    EXPECT_THAT(result.warnings(), ::testing::IsEmpty());
    EXPECT_EQ(result.error(), std::nullopt);
    EXPECT_THAT(result.misuses(), ::testing::IsEmpty());
}

}  // namespace veltrace::test

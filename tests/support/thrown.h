// What an operation of the module throws.
#pragma once

#include <functional>
#include <gtest/gtest.h>

#include "entry/errors.h"
#include "support/module_run.h"

namespace veltrace::test {

using namespace module;

/// Returns identifier and text of the `Error` that `action` throws. Fails the test if nothing is
/// thrown; other exceptions pass through.
template <class Error>
[[nodiscard]] zephra::Message thrownBy(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return message(error.identifier, error.message);
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

[[nodiscard]] inline zephra::Message fatalErrorOf(const std::function<void()>& action) {
    return thrownBy<VeltraceFatalError>(action);
}

[[nodiscard]] inline zephra::Message recoverableErrorOf(const std::function<void()>& action) {
    return thrownBy<VeltraceRecoverableError>(action);
}

}  // namespace veltrace::test

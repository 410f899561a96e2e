// Runs a function as a module.
#pragma once

#include <concepts>
#include <cstddef>
#include <gmock/gmock.h>
#include <span>
#include <utility>
#include <vector>

#include "zephra/host/host.h"
#include "zephra/qvx.h"

namespace zephra {

inline const Settings kStrict{.strict = true};

/// Calls `body` as a module. It may take the place of the output, and the inputs after that.
template <class Body>
CallResult runWith(const Settings& settings, const std::vector<Argument>& arguments, Body body) {
    const auto entryPoint = [&](int /*outputCount*/, qvArray* outputs[], int inputCount,
                                const qvArray* inputs[]) {
        if constexpr (std::invocable<Body&>) {
            body();
        } else if constexpr (std::invocable<Body&, qvArray*&>) {
            body(outputs[0]);
        } else {
            body(outputs[0], std::span(inputs, static_cast<std::size_t>(inputCount)));
        }
    };
    return Host(settings).call(entryPoint, arguments);
}

/// Calls `body` without arguments under a strict host, which must report no misuse.
template <class Body>
CallResult run(Body body) {
    CallResult result = runWith(kStrict, {}, std::move(body));
    EXPECT_THAT(result.misuses(), testing::IsEmpty());
    return result;
}

/// Creation functions in C++ terms.
inline qvArray* makeCell(std::vector<std::size_t> dims) {
    return qvCreateCellArray(dims.size(), dims.data());
}
inline qvArray* makeChar(std::vector<std::size_t> dims) {
    return qvCreateCharArray(dims.size(), dims.data());
}
inline qvArray* makeNumeric(std::vector<std::size_t> dims, qvClass classCode = qvClassDouble,
                            qvComplexity complexity = qvReal) {
    return qvCreateNumericArray(dims.size(), dims.data(), classCode, complexity);
}
inline qvArray* makeStruct(std::vector<std::size_t> dims, std::vector<const char*> names) {
    return qvCreateStructArray(dims.size(), dims.data(), static_cast<int>(names.size()),
                               names.data());
}

}  // namespace zephra

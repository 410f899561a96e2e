// Runs a function as a module.
#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "zephra/host/host.h"
#include "zephra/qvx.h"

namespace zephra {

/// The body of a module: it gets the inputs and a place for the output.
using Body = std::function<void(qvArray*& output, std::span<const qvArray* const> inputs)>;

inline const Settings kStrict{.strict = true};

/// Calls `body` as a module.
inline CallResult runWith(const Settings& settings, const std::vector<Argument>& arguments,
                          const Body& body) {
    const auto entryPoint = [&](int /*outputCount*/, qvArray* outputs[], int inputCount,
                                const qvArray* inputs[]) {
        body(outputs[0], {inputs, static_cast<std::size_t>(inputCount)});
    };
    return Host(settings).call(entryPoint, arguments);
}

/// Calls `body` without arguments under a strict host.
inline CallResult run(const std::function<void(qvArray*& output)>& body) {
    return runWith(kStrict, {}, [&](qvArray*& output, auto /*inputs*/) { body(output); });
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

// Creation functions of the host interface. Outside of any call they make nothing.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <limits>
#include <span>

#include "zephra/qv.h"

#include "call.h"
#include "dimensions.h"

namespace {

using zephra::Call;
using zephra::Dimensions;

constexpr std::array<std::size_t, 2> kOneElement{1, 1};

// Runs `make` for the current call and turns every failure to NULL: the functions are C.
template <class Make>
qvArray* create(Make make) noexcept {
    Call* const call = Call::current();
    if (call == nullptr || !call->grantsArray()) {
        return nullptr;
    }
    try {
        return make(*call);
    } catch (const std::exception&) {
        return nullptr;  // memory for the host's own bookkeeping ran out
    }
}

// Runs `make` for the dimensions that are given: none make 0 x 0, one makes n x 1. Null when they
// are missing or too many.
template <class Make>
qvArray* createOf(size_t ndim, const size_t* dims, Make make) {
    if (ndim == 0) {
        return make(std::array<std::size_t, 2>{});
    }
    if (dims == nullptr || ndim > zephra::kMostDimensions) {
        return nullptr;
    }
    return ndim == 1 ? make(std::array<std::size_t, 2>{*dims, 1}) : make(Dimensions(dims, ndim));
}

qvArray* createOf(Call& call, qvClass cls, qvComplexity complexity, size_t ndim,
                  const size_t* dims) {
    return createOf(ndim, dims, [&](Dimensions dimensions) {
        return call.createArray(cls, complexity, dimensions);
    });
}

bool isNumeric(qvClass cls) {
    return cls == qvClassDouble || cls == qvClassLogical || cls == qvClassChar;
}

}  // namespace

qvArray* qvCreateNumericArray(size_t ndim, const size_t* dims, qvClass cls,
                              qvComplexity complexity) {
    return create([=](Call& call) -> qvArray* {
        if (!isNumeric(cls) || (complexity == qvComplex && cls != qvClassDouble)) {
            call.noteMisuse("qvCreateNumericArray", "no numeric array has this class");
            return nullptr;
        }
        return createOf(call, cls, complexity, ndim, dims);
    });
}

qvArray* qvCreateDoubleScalar(double value) {
    return create([=](Call& call) {
        qvArray* const array = call.createArray(qvClassDouble, qvReal, kOneElement);
        if (array != nullptr) {
            *static_cast<double*>(array->data()) = value;
        }
        return array;
    });
}

qvArray* qvCreateString(const char* text) {
    return create([=](Call& call) -> qvArray* {
        if (text == nullptr) {
            call.noteMisuse("qvCreateString", "no text is given");
            return nullptr;
        }
        const std::span<const char> bytes(text, std::strlen(text));
        qvArray* const array =
            call.createArray(qvClassChar, qvReal, std::array<std::size_t, 2>{1, bytes.size()});
        if (array != nullptr) {
            std::ranges::transform(bytes, static_cast<qvChar*>(array->data()),
                                   [](char byte) { return static_cast<unsigned char>(byte); });
        }
        return array;
    });
}

qvArray* qvCreateCharArray(size_t ndim, const size_t* dims) {
    return create([=](Call& call) { return createOf(call, qvClassChar, qvReal, ndim, dims); });
}

qvArray* qvCreateCellArray(size_t ndim, const size_t* dims) {
    return create([=](Call& call) { return createOf(call, qvClassCell, qvReal, ndim, dims); });
}

qvArray* qvCreateStructArray(size_t ndim, const size_t* dims, int fieldCount,
                             const char* const* fieldNames) {
    return create([=](Call& call) -> qvArray* {
        if (fieldCount < 0 || (fieldCount > 0 && fieldNames == nullptr)) {
            call.noteMisuse("qvCreateStructArray", "no field names are given");
            return nullptr;
        }
        const std::span names(fieldNames, static_cast<std::size_t>(fieldCount));
        if (std::ranges::find(names, nullptr) != names.end()) {
            call.noteMisuse("qvCreateStructArray", "a field name is missing");
            return nullptr;
        }
        return createOf(ndim, dims, [&](Dimensions dimensions) {
            return call.createStruct(dimensions, names);
        });
    });
}

double qvGetNaN() {
    return std::numeric_limits<double>::quiet_NaN();
}

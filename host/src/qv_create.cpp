// Creation functions of the host interface. Outside of any call they make nothing.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <span>
#include <utility>

#include "zephra/qv.h"

#include "call.h"
#include "dimensions.h"
#include "field_table.h"

namespace {

using zephra::Call;
using zephra::Dimensions;
using zephra::FieldTable;

constexpr std::array<std::size_t, 2> kOneElement{1, 1};

// Runs `make` for the current call. Returns NULL for every failure, since the functions are C.
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

qvArray* createOf(Call& call, qvClass cls, qvComplexity complexity, size_t ndim, const size_t* dims,
                  std::unique_ptr<FieldTable> fields = nullptr) {
    if (ndim > zephra::kMaxDimensions || (ndim > 0 && dims == nullptr)) {
        return nullptr;
    }
    // No dimensions make 0 x 0, one makes n x 1.
    std::array<std::size_t, 2> matrix{};
    if (ndim == 1) {
        matrix = {*dims, 1};
    }
    const Dimensions dimensions = ndim < 2 ? Dimensions(matrix) : Dimensions(dims, ndim);
    return call.createArray(cls, complexity, dimensions, std::move(fields));
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
        return createOf(call, qvClassStruct, qvReal, ndim, dims,
                        std::make_unique<FieldTable>(names));
    });
}

double qvGetNaN() {
    return std::numeric_limits<double>::quiet_NaN();
}

#include "faults/emptied_places.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace veltrace::test {

namespace {

bool hasSameBits(double left, double right) {
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// But for what is stored in them.
bool areAlike(zephra::Value left, zephra::Value right) {
    return left.classCode() == right.classCode() &&
           std::ranges::equal(left.dimensions(), right.dimensions()) &&
           std::ranges::equal(left.numbers(), right.numbers(), hasSameBits) &&
           std::ranges::equal(left.characters(), right.characters()) &&
           left.fieldCount() == right.fieldCount();
}

bool hasSameFields(zephra::Value left, zephra::Value right) {
    for (std::size_t field = 0; field < left.fieldCount(); ++field) {
        if (left.fieldName(field) != right.fieldName(field)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::optional<std::size_t> emptiedPlaces(zephra::Value usual, zephra::Value value) {
    if (!value) {
        return usual ? 1 : 0;
    }
    if (!usual || !areAlike(usual, value) || !hasSameFields(usual, value)) {
        return std::nullopt;
    }
    std::size_t emptied = 0;
    for (std::size_t i = 0; i < usual.size(); ++i) {
        const bool isCell = usual.classCode() == qvClassCell;
        for (std::size_t place = 0; place < (isCell ? 1 : usual.fieldCount()); ++place) {
            const auto below = isCell ? emptiedPlaces(usual.cell(i), value.cell(i))
                                      : emptiedPlaces(usual.field(i, place), value.field(i, place));
            if (!below) {
                return std::nullopt;
            }
            emptied += *below;
        }
    }
    return emptied;
}

}  // namespace veltrace::test

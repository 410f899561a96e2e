#include "sweep/value_difference.h"

#include <algorithm>
#include <cmath>

namespace veltrace::test {

namespace {

using Names = std::set<std::string_view>;

bool isSameNumber(double left, double right) {
    return left == right ? std::signbit(left) == std::signbit(right)
                         : std::isnan(left) && std::isnan(right);
}

std::string differenceOfCells(zephra::Value left, zephra::Value right, const Names& ignored) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (std::string found = differenceOf(left.cell(i), right.cell(i), ignored);
            !found.empty()) {
            return "{" + std::to_string(i) + "}" + found;
        }
    }
    return {};
}

std::string differenceOfFields(zephra::Value left, zephra::Value right, const Names& ignored) {
    if (left.fieldCount() != right.fieldCount()) {
        return ": number of fields";
    }
    for (std::size_t field = 0; field < left.fieldCount(); ++field) {
        const std::string_view name = left.fieldName(field);
        if (name != right.fieldName(field)) {
            return ": field " + std::string(name) + " or " + std::string(right.fieldName(field));
        }
        if (ignored.contains(name)) {
            continue;
        }
        for (std::size_t i = 0; i < left.size(); ++i) {
            if (std::string found =
                    differenceOf(left.field(i, field), right.field(i, field), ignored);
                !found.empty()) {
                return "(" + std::to_string(i) + ")." + std::string(name) + found;
            }
        }
    }
    return {};
}

}  // namespace

std::string differenceOf(zephra::Value left, zephra::Value right, const Names& ignored) {
    if (static_cast<bool>(left) != static_cast<bool>(right)) {
        return ": one is empty";
    }
    if (left.classCode() != right.classCode()) {
        return ": class";
    }
    if (!std::ranges::equal(left.dimensions(), right.dimensions())) {
        return ": dimensions";
    }
    if (!std::ranges::equal(left.numbers(), right.numbers(), isSameNumber)) {
        return ": numbers";
    }
    if (!std::ranges::equal(left.characters(), right.characters())) {
        return ": characters";
    }
    if (left.className() == "cell") {
        return differenceOfCells(left, right, ignored);
    }
    return left.className() == "struct" ? differenceOfFields(left, right, ignored) : std::string{};
}

}  // namespace veltrace::test

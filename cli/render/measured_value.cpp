#include "render/measured_value.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <string_view>

#include "render/escape.h"
#include "render/number_text.h"
#include "render/units.h"

namespace veltrace::cli {
namespace {

/// What a field says that names a unit.
std::string wordOf(zephra::Value value) {
    if (value.numbers().size() == 1) {
        return briefNumber(value.numbers().front());
    }
    return withoutFinalNuls(value.text());
}

std::string_view namedMark(const Unit& unit, zephra::Value directories, std::size_t element) {
    if (unit.namedBy.empty()) {
        return {};
    }
    const std::string says = wordOf(directories.field(element, unit.namedBy));
    const auto word = std::ranges::find(unit.words, says, &UnitWord::says);
    return word != unit.words.end() ? word->mark : std::string_view{};
}

/// " (1/125 s)" when `number` is what dividing 1 by a stored 32-bit integer gives.
std::string asQuotient(double number, std::string_view mark) {
    const double divisor = std::round(1.0 / number);
    const bool isQuotient = divisor >= 2.0 && divisor < 0x1p32 && 1.0 / divisor == number;
    return isQuotient ? fmt::format(" (1/{}{})", divisor, mark) : "";
}

}  // namespace

std::optional<std::string> measured(zephra::Value directories, std::size_t element,
                                    std::size_t field) {
    const auto numbers = directories.field(element, field).numbers();
    const Unit* const unit = unitOf(directories.fieldName(field));
    if (unit == nullptr || numbers.size() != unit->numbers) {
        return std::nullopt;
    }
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        text += briefNumber(numbers[i]);
        text += unit->marks[i];
    }
    text += namedMark(*unit, directories, element);
    if (unit->isQuotient) {
        text += asQuotient(numbers.front(), unit->marks.front());
    }
    return text;
}

}  // namespace veltrace::cli

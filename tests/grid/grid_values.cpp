#include "grid/grid_values.h"

#include <bit>
#include <cmath>
#include <limits>

namespace veltrace::test {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct IntegerType {
    double lowest;
    double highest;
};

std::optional<IntegerType> integerType(std::uint16_t type) {
    switch (type) {
        case 1:
        case 7:
            return IntegerType{0, 255};
        case 3:
            return IntegerType{0, 65535};
        case 4:
        case 5:
        case 13:
            return IntegerType{0, 4294967295};
        case 6:
            return IntegerType{-128, 127};
        case 8:
            return IntegerType{-32768, 32767};
        case 9:
        case 10:
            return IntegerType{-2147483648, 2147483647};
        default:
            return std::nullopt;
    }
}

bool isFraction(std::uint16_t type) {
    return type == 5 || type == 10;
}

/// Elements to choose from; of fractions the numerators.
std::vector<double> elementsOf(std::uint16_t type) {
    if (type == 11 || type == 12) {
        return {1,  2.9,  0,     0.5,  -0.5, 6.5,        3, 32773, -1,        1e10,
                -3, 1e30, 65535, kNaN, 8,    -kInfinity, 4, 0.25,  kInfinity, 5};
    }
    const std::optional<IntegerType> range = integerType(type);
    std::vector<double> elements;
    for (const double candidate :
         {1.0,           2.0,   3.0,   0.0,     6.0,     -1.0,    8.0,          255.0,
          -128.0,        127.0, 128.0, 32767.0, 32768.0, 65535.0, -32768.0,     16909060.0,
          -2147483648.0, 5.0,   4.0,   32773.0, 258.0,   -2.0,    2147483648.0, 4294967295.0}) {
        if (range && candidate >= range->lowest && candidate <= range->highest) {
            elements.push_back(candidate);
        }
    }
    return elements;
}

void appendNumber(Bytes& bytes, std::uint16_t type, Order order, double number) {
    const std::size_t size = isFraction(type) ? 4 : elementSizeOf(type);
    if (type == 12) {
        append(bytes, order, std::bit_cast<std::uint64_t>(number));
    } else if (type == 11) {
        append(bytes, order, std::bit_cast<std::uint32_t>(static_cast<float>(number)));
    } else {
        const auto whole = static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
        if (size == 4) {
            append(bytes, order, static_cast<std::uint32_t>(whole));
        } else if (size == 2) {
            append(bytes, order, static_cast<std::uint16_t>(whole));
        } else {
            bytes.push_back(static_cast<std::uint8_t>(whole));
        }
    }
}

void addNumber(GridEntry& entry, Order order, double number) {
    const bool isSingle = entry.type == 11;
    entry.numbers.push_back(isSingle ? static_cast<double>(static_cast<float>(number)) : number);
    appendNumber(entry.value, entry.type, order, number);
}

void addCharacter(GridEntry& entry, std::size_t choice) {
    constexpr char kCharacters[] = {'k', 'i', '\0', 'l', 'n', '\n', '\xE9', '%', 's', '\0', '"'};
    const char character = kCharacters[choice % std::size(kCharacters)];
    entry.text.push_back(character);
    entry.value.push_back(static_cast<std::uint8_t>(character));
}

}  // namespace

std::size_t elementSizeOf(std::uint16_t type) {
    switch (type) {
        case 1:
        case 2:
        case 6:
        case 7:
            return 1;
        case 3:
        case 8:
            return 2;
        case 4:
        case 9:
        case 11:
        case 13:
            return 4;
        case 5:
        case 10:
        case 12:
            return 8;
        default:
            return 0;
    }
}

GridEntry variedEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count, Order order,
                      std::size_t salt) {
    GridEntry entry{.tag = tag, .type = type, .count = count};
    const std::vector<double> elements = elementsOf(type);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t choice = tag + salt + i * 7;
        if (type == 2) {
            addCharacter(entry, choice);
        } else if (!elements.empty()) {
            addNumber(entry, order, elements[choice % elements.size()]);
            if (isFraction(type)) {
                addNumber(entry, order, elements[(choice / 3 + i) % elements.size()]);
            }
        }
    }
    if (elementSizeOf(type) == 0) {
        entry.value = {1, 2, 3, 4};
    }
    return entry;
}

std::optional<GridEntry> numberEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                                     Order order, double number) {
    GridEntry entry{.tag = tag, .type = type, .count = count};
    const std::optional<IntegerType> range = integerType(type);
    const double scale = isFraction(type) && number != std::trunc(number) ? 10 : 1;
    const double numerator = number * scale;
    if (range && !(numerator >= range->lowest && numerator <= range->highest &&
                   numerator == std::trunc(numerator))) {
        return std::nullopt;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        addNumber(entry, order, numerator);
        if (isFraction(type)) {
            addNumber(entry, order, scale);
        }
    }
    return entry;
}

}  // namespace veltrace::test

#include "made_value.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "output_checks.h"

namespace veltrace::fuzz {
namespace {

using Kind = MadeValue::Kind;

constexpr std::size_t kDeepest = 12;
/// Of directories that only wrap another, which cost no bytes of the input.
constexpr std::size_t kMostWrappings = 200;

MadeValue madeValue(Parameters& parameters, std::size_t depth);

double madeNumber(Parameters& parameters) {
    return parameters.flag() ? parameters.value<double>()
                             : static_cast<double>(parameters.value<std::int16_t>());
}

/// Few numbers, which repeat in a larger array.
std::vector<double> madeNumbers(Parameters& parameters, std::size_t count, bool areLogical) {
    std::vector<double> few(1 + parameters.upTo(5));
    for (double& number : few) {
        number = areLogical ? static_cast<double>(parameters.upTo(1)) : madeNumber(parameters);
    }
    std::vector<double> numbers(count);
    for (std::size_t i = 0; i < count; ++i) {
        numbers[i] = few[i % few.size()];
    }
    return numbers;
}

std::vector<std::size_t> madeSize(Parameters& parameters) {
    switch (parameters.upTo(5)) {
        case 0:
            return {1, 1};
        case 1:
            return {1, parameters.upTo(20)};
        case 2:
            return {parameters.upTo(20), 1};
        case 3:
            return {parameters.upTo(4), parameters.upTo(4), parameters.upTo(3)};
        case 4:
            return {1 + parameters.upTo(3), parameters.upTo(200)};
        default:
            return {parameters.upTo(4), parameters.upTo(4)};
    }
}

MadeValue madeArray(Parameters& parameters, Kind kind) {
    MadeValue value;
    value.kind = kind;
    value.size = madeSize(parameters);
    value.numbers = madeNumbers(parameters, value.count(), kind == Kind::logical);
    return value;
}

MadeValue madeText(Parameters& parameters) {
    MadeValue value;
    value.kind = Kind::text;
    const std::string text = parameters.text(60);
    const std::size_t times = parameters.upTo(15) == 15 ? parameters.upTo(40) : 1;
    for (std::size_t i = 0; i < times; ++i) {
        value.text += text;
    }
    value.size = {1, value.text.size()};
    return value;
}

MadeValue madeCells(Parameters& parameters, std::size_t depth) {
    MadeValue value;
    value.kind = Kind::cells;
    value.size = {parameters.upTo(4), 1};
    for (std::size_t i = 0; i < value.size.front(); ++i) {
        value.contents.push_back(parameters.flag() ? madeText(parameters)
                                                   : madeValue(parameters, depth + 1));
    }
    return value;
}

std::vector<std::string> madeNames(Parameters& parameters) {
    std::vector<std::string> names;
    for (std::size_t left = parameters.upTo(4); left > 0; --left) {
        std::string name = madeName(parameters);
        const bool isNew = std::ranges::none_of(names, [&](const std::string& other) {
            return charactersOf(other) == charactersOf(name);
        });
        if (isNew) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

MadeValue madeDirectories(Parameters& parameters, std::size_t depth) {
    MadeValue value;
    value.kind = Kind::directories;
    value.size = {parameters.upTo(3), 1};
    value.names = madeNames(parameters);
    for (std::size_t left = value.size.front() * value.names.size(); left > 0; --left) {
        value.contents.push_back(madeValue(parameters, depth + 1));
    }
    return value;
}

MadeValue wrapped(MadeValue inner, std::size_t times) {
    for (; times > 0; --times) {
        MadeValue outer;
        outer.kind = Kind::directories;
        outer.size = {1, 1};
        outer.names = {"Next"};
        outer.contents.push_back(std::move(inner));
        inner = std::move(outer);
    }
    return inner;
}

MadeValue madeValue(Parameters& parameters, std::size_t depth) {
    const std::size_t choice = parameters.upTo(7);
    if (depth > kDeepest) {
        return {};
    }
    switch (choice) {
        case 1:
            return madeArray(parameters, Kind::logical);
        case 2:
        case 3:
            return madeArray(parameters, Kind::number);
        case 4:
        case 5:
            return madeText(parameters);
        case 6:
            return madeCells(parameters, depth);
        case 7:
            return madeDirectories(parameters, depth);
        default:
            return {};
    }
}

template <class Element>
qvArray* arrayOf(const MadeValue& value, qvClass classCode) {
    qvArray* const array =
        qvCreateNumericArray(value.size.size(), value.size.data(), classCode, qvReal);
    std::ranges::transform(value.numbers, static_cast<Element*>(qvGetData(array)),
                           [](double number) { return static_cast<Element>(number); });
    return array;
}

qvArray* charactersFrom(const MadeValue& value) {
    qvArray* const array = qvCreateCharArray(value.size.size(), value.size.data());
    std::ranges::transform(value.text, static_cast<qvChar*>(qvGetData(array)),
                           [](char c) { return static_cast<unsigned char>(c); });
    return array;
}

qvArray* cellsFrom(const MadeValue& value) {
    qvArray* const array = qvCreateCellArray(value.size.size(), value.size.data());
    for (std::size_t i = 0; i < value.contents.size(); ++i) {
        qvSetCell(array, i, toArray(value.contents[i]));
    }
    return array;
}

qvArray* structuresFrom(const MadeValue& value) {
    std::vector<const char*> names;
    for (const std::string& name : value.names) {
        names.push_back(name.c_str());
    }
    qvArray* const array = qvCreateStructArray(value.size.size(), value.size.data(),
                                               static_cast<int>(names.size()), names.data());
    for (std::size_t i = 0; i < value.contents.size(); ++i) {
        qvSetField(array, i / names.size(), names[i % names.size()], toArray(value.contents[i]));
    }
    return array;
}

}  // namespace

std::size_t MadeValue::count() const {
    return size.empty() ? 0
                        : std::accumulate(size.begin(), size.end(), std::size_t{1},
                                          [](std::size_t a, std::size_t b) { return a * b; });
}

MadeValue madeOutput(Parameters& parameters) {
    const std::size_t wrappings = parameters.upTo(9) == 9 ? parameters.upTo(kMostWrappings) : 0;
    return wrapped(madeDirectories(parameters, 0), wrappings);
}

std::string madeName(Parameters& parameters) {
    constexpr std::array<const char*, 10> kKnown{
        "Make",        "Width",          "DigitalCamera", "ExposureTime",   "GPSInfo",
        "GPSLatitude", "GPSLatitudeRef", "XResolution",   "ResolutionUnit", "A"};
    const std::size_t choice = parameters.upTo(2 * kKnown.size());
    if (choice < kKnown.size()) {
        return kKnown[choice];
    }
    std::string name = parameters.text(10);
    std::erase(name, '\0');
    return name.empty() ? "B" : name;
}

std::string charactersOf(std::string_view bytes) {
    if (isUnicode(bytes)) {
        return std::string(bytes);
    }
    std::string characters;
    for (const char c : bytes) {
        const unsigned code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            characters += c;
        } else {
            characters +=
                {static_cast<char>(0xC0U | code >> 6U), static_cast<char>(0x80U | (code & 0x3FU))};
        }
    }
    return characters;
}

qvArray* toArray(const MadeValue& value) {
    switch (value.kind) {
        case Kind::logical:
            return arrayOf<unsigned char>(value, qvClassLogical);
        case Kind::number:
            return arrayOf<double>(value, qvClassDouble);
        case Kind::text:
            return charactersFrom(value);
        case Kind::cells:
            return cellsFrom(value);
        case Kind::directories:
            return structuresFrom(value);
        case Kind::nothing:
            break;
    }
    return nullptr;
}

}  // namespace veltrace::fuzz

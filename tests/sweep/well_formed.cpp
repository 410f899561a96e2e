#include "sweep/well_formed.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "vocabulary/tables.h"

namespace veltrace::test {

namespace {

/// The field at a place among the default fields, of which a JPEG file has the general ones only.
std::string_view defaultField(std::size_t index) {
    const std::size_t general = std::size(kGeneralFields);
    return index < general ? kGeneralFields[index] : kBaselineFields[index - general];
}

bool hasShape(zephra::Value value, std::size_t rows, std::size_t columns) {
    const std::size_t expected[] = {rows, columns};
    return std::ranges::equal(value.dimensions(), expected);
}

bool isColumn(zephra::Value value) {
    return hasShape(value, value.size(), 1);
}

std::string flawOfDefaultFields(zephra::Value directories, std::size_t defaultFields) {
    if (directories.fieldCount() < defaultFields) {
        return "default fields are missing";
    }
    for (std::size_t i = 0; i < defaultFields; ++i) {
        if (directories.fieldName(i) != defaultField(i)) {
            return "instead of " + std::string(defaultField(i)) + " there is a field " +
                   std::string(directories.fieldName(i));
        }
    }
    for (std::size_t i = 0; i < directories.size(); ++i) {
        for (const char* filled : {"Filename", "FileModDate", "FileSize", "Format", "Width",
                                   "Height", "BitDepth", "ColorType", "FormatSignature"}) {
            if (!directories.field(i, filled)) {
                return std::string(filled) + " is empty";
            }
        }
        if (directories.field(i, "FormatVersion")) {
            return "FormatVersion has a value";
        }
    }
    return {};
}

std::string flawOfUnknownTags(zephra::Value tags) {
    if (tags.className() != "struct" || !isColumn(tags) || tags.empty()) {
        return "UnknownTags is no column of structures";
    }
    if (tags.fieldCount() != 3 || tags.fieldName(0) != "ID" || tags.fieldName(1) != "Offset" ||
        tags.fieldName(2) != "Value") {
        return "UnknownTags has other fields";
    }
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const zephra::Value value = tags.field(i, "Value");
        if (tags.field(i, "ID").numbers().size() != 1 ||
            tags.field(i, "Offset").numbers().size() != 1) {
            return "an unknown tag lacks its number or offset";
        }
        if (value && value.className() != "char" &&
            (value.className() != "double" || !isColumn(value))) {
            return "an unknown tag has a value of another kind";
        }
    }
    return {};
}

/// Of a tag's value; `defaultFields` is what a directory of images in this file has.
std::string flawOfField(std::string_view name, zephra::Value value, std::size_t defaultFields) {
    if (name == "UnknownTags") {
        return flawOfUnknownTags(value);
    }
    const bool isDirectory = name == "SubIFDs" || name == "DigitalCamera" || name == "GPSInfo" ||
                             name == "InteroperabilityIFD";
    if (isDirectory) {
        return flawOf(value, name == "SubIFDs" ? defaultFields : 0);
    }
    if (value.className() == "char") {
        return value.dimensions().size() == 2 ? "" : "a text has more than two dimensions";
    }
    if (value.className() == "cell") {
        return name == "SampleFormat" && isColumn(value) ? "" : "an unexpected cell array";
    }
    if (value.className() != "double") {
        return "a value of class " + std::string(value.className());
    }
    if (name == "Colormap") {
        return hasShape(value, value.size() / 3, 3) ? "" : "a colour map without three columns";
    }
    const bool isRow =
        name == "BitsPerSample" || name == "MaxSampleValue" || name == "FormatSignature";
    const bool isNothing = name == "FormatSignature" && hasShape(value, 0, 0);
    return isNothing || (isRow ? hasShape(value, 1, value.size()) : isColumn(value))
               ? ""
               : "numbers in another shape";
}

}  // namespace

std::string flawOf(zephra::Value output, std::size_t defaultFields) {
    if (!output) {
        return "there is no value";
    }
    if (output.className() == "double" && hasShape(output, 0, 0)) {
        return {};
    }
    if (output.className() != "struct" || output.empty() || !isColumn(output)) {
        return "the value is no column of structures";
    }
    if (defaultFields != 0) {
        if (std::string flaw = flawOfDefaultFields(output, defaultFields); !flaw.empty()) {
            return flaw;
        }
    }
    std::set<std::string_view> names;
    for (std::size_t field = 0; field < output.fieldCount(); ++field) {
        const std::string_view name = output.fieldName(field);
        if (name.empty() || !names.insert(name).second) {
            return "a field without a name of its own: '" + std::string(name) + "'";
        }
        for (std::size_t i = 0; i < output.size(); ++i) {
            const zephra::Value value = output.field(i, field);
            if (std::string flaw = value ? flawOfField(name, value, defaultFields) : "";
                !flaw.empty()) {
                return std::string(name) + ": " + flaw;
            }
        }
    }
    return {};
}

}  // namespace veltrace::test

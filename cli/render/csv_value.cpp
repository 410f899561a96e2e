#include "render/csv_value.h"

#include <cstddef>
#include <fmt/format.h>
#include <string>

#include "render/escape.h"
#include "render/measured_value.h"

namespace veltrace::cli {
namespace {

void appendText(BoundedText& out, zephra::Value value) {
    out.append(visible(withoutFinalNuls(value.text())));
}

void appendSize(BoundedText& out, zephra::Value value) {
    out.append(fmt::format("[{} {}]", fmt::join(value.dimensions(), " x "), value.className()));
}

void appendElement(BoundedText& out, zephra::Value value, std::size_t index) {
    switch (value.classCode()) {
        case qvClassCell:
            if (value.cell(index).classCode() == qvClassCell) {
                appendSize(out, value.cell(index));
            } else {
                appendCsvValue(out, value.cell(index));
            }
            break;
        case qvClassLogical:
            out.append(value.logicals()[index] != 0 ? "true" : "false");
            break;
        default:
            out.append(exactNumber(value.numbers()[index]));
    }
}

void appendArray(BoundedText& out, zephra::Value value) {
    const std::size_t rows = value.dimensions().front();
    const std::size_t columns = value.size() / rows;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (i > 0) {
            out.append(' ');
        }
        appendElement(out, value, i % columns * rows + i / columns);
    }
}

}  // namespace

void appendCsvValue(BoundedText& out, zephra::Value value) {
    if (value.classCode() == qvClassChar) {
        appendText(out, value);
    } else if (value.classCode() == qvClassStruct) {
        appendSize(out, value);
    } else if (!value.empty()) {
        appendArray(out, value);
    }
}

}  // namespace veltrace::cli

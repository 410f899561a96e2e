#include "render/csv_renderer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "render/bounded_text.h"
#include "render/csv_value.h"
#include "render/escape.h"
#include "render/text_value.h"

namespace veltrace::cli {
namespace {

std::vector<std::string> namesIn(std::string_view path) {
    std::vector<std::string> names;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('.', start), path.size());
        names.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

/// The values of the field `name` in all elements of `arrays`, without empty places.
std::vector<zephra::Value> fieldsOf(const std::vector<zephra::Value>& arrays,
                                    std::string_view name) {
    std::vector<zephra::Value> values;
    for (const zephra::Value array : arrays) {
        const auto field = array.fieldIndex(name);
        for (std::size_t element = 0; field && element < array.size(); ++element) {
            if (const zephra::Value value = array.field(element, *field)) {
                values.push_back(value);
            }
        }
    }
    return values;
}

std::string joined(const std::vector<zephra::Value>& values, Allowance& allowance) {
    BoundedText cell(allowance);
    for (const zephra::Value value : values) {
        if (isBlank(value)) {
            continue;
        }
        if (!cell.text().empty()) {
            cell.append(';');
        }
        appendCsvValue(cell, value);
    }
    return std::move(cell).take();
}

bool isCount(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::vector<std::string> csvFields(const RenderOptions& options) {
    if (!options.fields.empty()) {
        return options.fields;
    }
    return {"Format",
            "Width",
            "Height",
            "BitDepth",
            "ColorType",
            "Compression",
            "DateTime",
            "Make",
            "Model",
            "DigitalCamera.ExposureTime",
            "DigitalCamera.FNumber",
            "DigitalCamera.FocalLength",
            "GPSInfo.GPSLatitude",
            "GPSInfo.GPSLongitude"};
}

CsvRenderer::CsvRenderer(const RenderOptions& options)
    : selection_(options.fields), maxOutput_(options.maxOutput) {
    for (const std::string& field : csvFields(options)) {
        paths_.push_back(namesIn(field));
    }
}

Rendering CsvRenderer::render(zephra::Value output) const {
    Rendering rendering;
    Allowance allowance(maxOutput_);
    rendering.cells.push_back(std::to_string(output.size()));
    allowance.take(rendering.cells.front().size());
    for (std::uint32_t index = 0; index < paths_.size(); ++index) {
        std::vector<zephra::Value> values{output};
        for (const std::string& name : paths_[index]) {
            values = fieldsOf(values, name);
        }
        if (!values.empty() && index < selection_.size()) {
            rendering.fieldsSeen.push_back(index);
        }
        rendering.cells.push_back(joined(values, allowance));
    }
    return rendering;
}

bool CsvRenderer::accepts(const Rendering& rendering) const {
    std::size_t size = 0;
    for (const std::string& cell : rendering.cells) {
        size += cell.size();
    }
    return rendering.body.empty() && rendering.nonfinite.empty() && rendering.latin1.empty() &&
           rendering.omitted.empty() && areIndicesOf(selection_, rendering.fieldsSeen) &&
           size <= maxOutput_ && rendering.cells.size() == paths_.size() + 1 &&
           isCount(rendering.cells.front()) &&
           std::ranges::all_of(rendering.cells,
                               [](std::string_view cell) { return isPrintable(cell); });
}

}  // namespace veltrace::cli

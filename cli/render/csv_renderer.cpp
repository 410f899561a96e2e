#include "render/csv_renderer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "render/bounded_text.h"
#include "render/csv_cells.h"
#include "render/csv_fields.h"
#include "render/csv_value.h"
#include "render/text_value.h"

namespace veltrace::cli {
namespace {

// RapidJSON counts the bytes of a text in 32 bits.
constexpr std::size_t kLargestCell = std::numeric_limits<std::uint32_t>::max();

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

CsvRenderer::CsvRenderer(const RenderOptions& options)
    : selection_(options.fields), limit_(std::min(options.largestOutput, kLargestCell)) {
    for (const std::string& field : csvFields(options)) {
        paths_.push_back(namesIn(field));
    }
}

Rendering CsvRenderer::render(zephra::Value output) const {
    Rendering rendering;
    Allowance allowance(limit_);
    std::vector<std::string> cells{std::to_string(output.size())};
    for (std::uint32_t index = 0; index < paths_.size(); ++index) {
        std::vector<zephra::Value> values{output};
        for (const std::string& name : paths_[index]) {
            values = fieldsOf(values, name);
        }
        if (!values.empty() && index < selection_.size()) {
            rendering.fieldsSeen.push_back(index);
        }
        cells.push_back(joined(values, allowance));
    }
    rendering.body = packedCells(cells, limit_);
    return rendering;
}

bool CsvRenderer::accepts(const Rendering& rendering) const {
    if (!rendering.nonfinite.empty() || !rendering.latin1.empty() || !rendering.omitted.empty() ||
        !areIndicesOf(selection_, rendering.fieldsSeen)) {
        return false;
    }
    const auto cells = unpackedCells(rendering.body, paths_.size() + 1);
    return cells && isCount(cells->front());
}

}  // namespace veltrace::cli

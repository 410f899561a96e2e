#include "render/text_renderer.h"

#include <algorithm>
#include <utility>

#include "render/bounded_text.h"
#include "render/escape.h"
#include "render/text_style.h"
#include "render/text_walk.h"

namespace veltrace::cli {
namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kNothingSelected = "  none of the selected fields\n";
constexpr char kEscape = '\x1b';

/// The one of `kStyles` that `text` begins with, or nothing. Terminals obey more escape sequences,
/// but text has no others.
std::string_view styleAt(std::string_view text) {
    const auto* const style = std::ranges::find_if(
        kStyles, [text](std::string_view mark) { return text.starts_with(mark); });
    return style != kStyles.end() ? *style : std::string_view{};
}

}  // namespace

TextRenderer::TextRenderer(const RenderOptions& options)
    : options_(options), selection_(options.fields) {}

Rendering TextRenderer::render(zephra::Value output) const {
    if (output.empty()) {
        return {};
    }
    Allowance allowance(options_.maxOutput);
    BoundedText text(allowance);
    TextWalk walk(options_, selection_, text);
    walk.write(output);
    if (text.text().empty()) {
        text.append(kNothingSelected);
    }
    Rendering rendering;
    rendering.body = std::move(text).take();
    rendering.fieldsSeen = walk.seen().indices();
    return rendering;
}

bool TextRenderer::accepts(const Rendering& rendering) const {
    if (!rendering.nonfinite.empty() || !rendering.latin1.empty() || !rendering.omitted.empty() ||
        !rendering.cells.empty() || !areIndicesOf(selection_, rendering.fieldsSeen)) {
        return false;
    }
    for (std::string_view rest = rendering.body; !rest.empty();) {
        const std::size_t end = rest.find('\n');
        if (end == std::string_view::npos || !rest.starts_with(kIndent) ||
            !acceptsLine(rest.substr(0, end))) {
            return false;
        }
        rest.remove_prefix(end + 1);
    }
    return true;
}

/// Each line must end plain.
bool TextRenderer::acceptsLine(std::string_view line) const {
    bool isPlain = true;
    for (auto escape = line.find(kEscape); escape != std::string_view::npos;
         escape = line.find(kEscape)) {
        const std::string_view style = styleAt(line.substr(escape));
        if (!options_.colour || style.empty() || !isPrintable(line.substr(0, escape))) {
            return false;
        }
        isPlain = style == kPlain;
        line.remove_prefix(escape + style.size());
    }
    return isPlain && isPrintable(line);
}

}  // namespace veltrace::cli

#include "render/text_walk.h"

#include <algorithm>
#include <fmt/format.h>

#include "render/escape.h"
#include "render/measured_value.h"
#include "render/text_value.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kIndentStep = 2;
// Deeper directories keep this indent, and their headings state the depth: otherwise the output of
// a deep file would grow with the square of its depth.
constexpr std::size_t kMaxIndent = 16;

std::string indentAt(std::size_t depth) {
    return fmt::format("{:{}}", "", kIndentStep * std::min(depth, kMaxIndent));
}

bool isDirectories(zephra::Value value) {
    return value.classCode() == qvClassStruct;
}

}  // namespace

void TextWalk::write(zephra::Value output) {
    open_.push_back({"Directory", output, selection_.root(), selection_.size() == 0});
    while (!open_.empty()) {
        Open& top = open_.back();
        if (top.element == top.directories.size()) {
            open_.pop_back();
        } else {
            continueWith(top);
        }
    }
}

/// `top` is invalid afterwards.
void TextWalk::continueWith(Open& top) {
    if (top.field == 0) {
        writeDirectory(top);
    }
    if (top.field == top.directories.fieldCount()) {
        ++top.element;
        top.field = 0;
        top.hasHeading = false;
        return;
    }
    const std::size_t index = top.field++;
    const zephra::Value nested = top.directories.field(top.element, index);
    if (!isDirectories(nested)) {
        return;
    }
    const std::string_view name = top.directories.fieldName(index);
    const auto field = FieldSelection::field(top.place, name);
    if (field.wanted != FieldSelection::Wanted::no) {
        seen_.add(field);
        open_.push_back(
            {name, nested, field.inside, field.wanted == FieldSelection::Wanted::whole});
    }
}

void TextWalk::writeDirectory(Open& top) {
    const std::vector<Line> lines = linesOf(top);
    if (top.isWhole || !lines.empty()) {
        writeHeadings();
    }
    writeLines(top, lines);
}

/// Writes the headings of the innermost directory and of those around it that have none yet.
void TextWalk::writeHeadings() {
    const auto withHeading = std::find_if(open_.rbegin(), open_.rend(),
                                          [](const Open& open) { return open.hasHeading; });
    for (auto open = withHeading.base(); open != open_.end(); ++open) {
        writeHeading(*open, static_cast<std::size_t>(open - open_.begin()) + 1);
        open->hasHeading = true;
    }
}

void TextWalk::writeHeading(const Open& open, std::size_t depth) {
    std::string heading = visible(open.label);
    if (open.directories.size() > 1) {
        heading += fmt::format(" {} of {}", open.element + 1, open.directories.size());
    }
    if (depth > kMaxIndent) {
        heading += fmt::format(" (depth {})", depth);
    }
    out_.append(indentAt(depth));
    out_.append(style_.heading(heading));
    out_.append('\n');
}

std::vector<TextWalk::Line> TextWalk::linesOf(const Open& open) {
    std::vector<Line> lines;
    for (std::size_t index = 0; index < open.directories.fieldCount(); ++index) {
        const zephra::Value value = open.directories.field(open.element, index);
        const std::string_view name = open.directories.fieldName(index);
        const auto field = FieldSelection::field(open.place, name);
        if (!value || isDirectories(value) || field.wanted != FieldSelection::Wanted::whole) {
            continue;
        }
        seen_.add(field);
        if (!isBlank(value)) {
            lines.push_back({visible(name), index});
        }
    }
    return lines;
}

void TextWalk::writeLines(const Open& open, const std::vector<Line>& lines) {
    std::size_t width = 0;
    for (const Line& line : lines) {
        width = std::max(width, line.name.size());
    }
    const std::string indent = indentAt(open_.size() + 1);
    for (const Line& line : lines) {
        out_.append(indent);
        out_.append(style_.name(line.name));
        out_.append(std::string(width - line.name.size() + 2, ' '));
        writeValue(open, line.field);
        out_.append('\n');
    }
}

void TextWalk::writeValue(const Open& open, std::size_t field) {
    if (const auto text = measured(open.directories, open.element, field)) {
        out_.append(*text);
    } else {
        TextValueWriter(out_, maxValues_, style_)
            .write(open.directories.field(open.element, field));
    }
}

}  // namespace veltrace::cli

#include "text_output.h"

#include <algorithm>
#include <cstddef>
#include <fmt/format.h>
#include <vector>

#include "render/escape.h"
#include "render/value_summary.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kIndentStep = 2;
// Deeper directories stay at this indent and tell their depth instead: lines that grow with the
// depth would make the output of a deep file grow with its square.
constexpr std::size_t kDeepestIndent = 16;

std::size_t indentAt(std::size_t depth) {
    return kIndentStep * std::min(depth, kDeepestIndent);
}

struct Line {
    std::string name;
    std::string value;
};

bool isDirectories(zephra::Value value) {
    return value.classCode() == qvClassStruct;
}

std::vector<Line> linesOf(zephra::Value directories, std::size_t element) {
    std::vector<Line> lines;
    for (std::size_t field = 0; field < directories.fieldCount(); ++field) {
        const zephra::Value value = directories.field(element, field);
        if (isDirectories(value)) {
            continue;
        }
        std::string text = summary(value);
        if (!text.empty()) {
            lines.push_back({visible(directories.fieldName(field)), std::move(text)});
        }
    }
    return lines;
}

}  // namespace

void TextOutput::file(std::string_view path, const zephra::CallResult& result) {
    if (result.error()) {
        return;
    }
    out_ << (isFirst_ ? "" : "\n") << visible(path) << '\n';
    isFirst_ = false;
    if (result.output().empty()) {
        out_ << "  no directories\n";
    } else {
        writeDirectories(result.output());
    }
}

/// What is open is kept in a list, not on the call stack: directories nest thousands deep.
void TextOutput::writeDirectories(zephra::Value root) {
    struct Open {
        std::string_view label;
        zephra::Value directories;
        std::size_t element = 0;
        std::size_t field = 0;
    };
    std::vector<Open> open{{"Directory", root}};
    while (!open.empty()) {
        Open& top = open.back();
        if (top.element == top.directories.size()) {
            open.pop_back();
            continue;
        }
        if (top.field == 0) {
            writeHeading(top.label, top.directories, top.element, open.size());
            writeFields(top.directories, top.element, open.size() + 1);
        }
        if (top.field == top.directories.fieldCount()) {
            ++top.element;
            top.field = 0;
            continue;
        }
        const std::size_t field = top.field++;
        const zephra::Value nested = top.directories.field(top.element, field);
        if (isDirectories(nested)) {
            open.push_back({top.directories.fieldName(field), nested});
        }
    }
}

void TextOutput::writeHeading(std::string_view label, zephra::Value directories,
                              std::size_t element, std::size_t depth) {
    std::string heading = visible(label);
    if (directories.size() > 1) {
        heading += fmt::format(" {} of {}", element + 1, directories.size());
    }
    if (depth > kDeepestIndent) {
        heading += fmt::format(" (depth {})", depth);
    }
    out_ << fmt::format("{:{}}{}\n", "", indentAt(depth), heading);
}

void TextOutput::writeFields(zephra::Value directories, std::size_t element, std::size_t depth) {
    const std::vector<Line> lines = linesOf(directories, element);
    std::size_t width = 0;
    for (const Line& line : lines) {
        width = std::max(width, line.name.size());
    }
    for (const Line& line : lines) {
        out_ << fmt::format("{:{}}{:<{}}  {}\n", "", indentAt(depth), line.name, width, line.value);
    }
}

}  // namespace veltrace::cli

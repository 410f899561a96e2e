// Writes the directories of an output as text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zephra/host/value.h"

#include "render/bounded_text.h"
#include "render/field_selection.h"
#include "render/render_options.h"
#include "render/text_style.h"

namespace veltrace::cli {

/// Writes the directories of one output to `out`. Open directories are kept in a list, not on the
/// call stack: they nest thousands deep.
class TextWalk {
public:
    TextWalk(const RenderOptions& options, const FieldSelection& selection, BoundedText& out)
        : maxValues_(options.maxValues),
          style_(options.colour),
          selection_(selection),
          seen_(selection),
          out_(out) {}

    /// Throws OutputTooLarge.
    void write(zephra::Value output);

    [[nodiscard]] const SeenFields& seen() const { return seen_; }

private:
    struct Open {
        std::string_view label;
        zephra::Value directories;
        FieldSelection::Place place;
        bool isWhole;  // it has headings even without lines
        std::size_t element = 0;
        std::size_t field = 0;
        bool hasHeading = false;
    };

    struct Line {
        std::string name;
        std::size_t field;
    };

    void continueWith(Open& top);
    void writeDirectory(Open& top);
    void writeHeadings();
    void writeHeading(const Open& open, std::size_t depth);
    [[nodiscard]] std::vector<Line> linesOf(const Open& open);
    void writeLines(const Open& open, const std::vector<Line>& lines);
    void writeValue(const Open& open, std::size_t field);

    std::size_t maxValues_;
    TextStyle style_;
    const FieldSelection& selection_;
    SeenFields seen_;
    BoundedText& out_;
    std::vector<Open> open_;
};

}  // namespace veltrace::cli

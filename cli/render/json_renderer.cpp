#include "render/json_renderer.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "render/json_check.h"
#include "render/json_text.h"
#include "render/json_writer.h"

namespace veltrace::cli {
namespace {

std::string_view nameOf(double nonfinite) {
    if (std::isnan(nonfinite)) {
        return "NaN";
    }
    return nonfinite > 0 ? "Infinity" : "-Infinity";
}

bool isContainer(zephra::Value value) {
    return value.classCode() == qvClassCell || value.classCode() == qvClassStruct;
}

void appendStep(std::string& place, std::string_view name) {
    place += '/';
    for (const char c : asCharacters(name)) {
        if (c == '~') {
            place += "~0";
        } else if (c == '/') {
            place += "~1";
        } else {
            place += c;
        }
    }
}

void appendStep(std::string& place, std::size_t index) {
    place += '/';
    place += fmt::format_int(index).str();
}

/// The next element of a list without brackets.
BoundedText& next(BoundedText& list) {
    if (!list.text().empty()) {
        list.append(',');
    }
    return list;
}

/// One rendering. Open values are kept in a list, not on the call stack: values nest thousands
/// deep.
class Rendition {
public:
    Rendition(const FieldSelection& selection, std::optional<std::size_t> omitLargerThan,
              std::size_t maxOutput)
        : allowance_(maxOutput),
          omitLargerThan_(omitLargerThan),
          seen_(selection),
          root_(selection.root()) {}

    Rendering of(zephra::Value output) && {
        if (output.empty()) {
            json_.startArray();
            json_.endArray();
        } else {
            begin(output, root_);
        }
        while (!open_.empty()) {
            if (open_.back().container.classCode() == qvClassCell) {
                continueCell();
            } else {
                continueStructure();
            }
        }
        return {std::move(body_).take(),
                std::move(nonfinite_).take(),
                std::move(latin1_).take(),
                std::move(omitted_).take(),
                {},
                seen_.indices()};
    }

private:
    struct Open {
        zephra::Value container;
        FieldSelection::Place place;
        std::size_t element = 0;  // of a cell array: the next one
        std::size_t field = 0;    // the next one
    };

    void begin(zephra::Value value, FieldSelection::Place place) {
        if (value.classCode() != qvClassStruct && omitLargerThan_ &&
            value.size() > *omitLargerThan_) {
            omit(value);
            return;
        }
        switch (value.classCode()) {
            case qvClassCell:
            case qvClassStruct:
                json_.startArray();
                open_.push_back({value, place});
                break;
            case qvClassChar:
                writeText(value);
                break;
            case qvClassLogical:
                writeArray(value.logicals(), value.dimensions().front());
                break;
            case qvClassDouble:
                writeArray(value.numbers(), value.dimensions().front());
                break;
        }
    }

    void continueCell() {
        Open& cell = open_.back();
        if (cell.element == cell.container.size()) {
            end();
        } else {
            begin(cell.container.cell(cell.element++), cell.place);
        }
    }

    void continueStructure() {
        Open& structure = open_.back();
        if (structure.element == structure.container.size()) {
            end();
            return;
        }
        if (structure.field == 0) {
            json_.startObject();
        }
        if (structure.field == structure.container.fieldCount()) {
            json_.endObject();
            ++structure.element;
            structure.field = 0;
            return;
        }
        continueElement(structure);
    }

    void continueElement(Open& structure) {
        const std::string_view name = structure.container.fieldName(structure.field);
        const FieldSelection::Field field = FieldSelection::field(structure.place, name);
        const zephra::Value value = structure.container.field(structure.element, structure.field++);
        seen_.add(field);
        const bool isWanted =
            field.wanted == FieldSelection::Wanted::whole ||
            (field.wanted == FieldSelection::Wanted::partly && isContainer(value));
        if (isWanted) {
            json_.key(name);
            begin(value, field.inside);
        }
    }

    void end() {
        json_.endArray();
        open_.pop_back();
    }

    void writeText(zephra::Value value) {
        if (!json_.text(value.text())) {
            appendText(next(latin1_), here());
        }
    }

    template <typename Element>
    void writeArray(std::span<const Element> elements, std::size_t rows) {
        if (elements.empty()) {
            json_.null();
        } else if (elements.size() == 1) {
            writeElement(elements.front(), [] { return std::string(); });
        } else if (rows == 1 || rows == elements.size()) {
            writeList(elements);
        } else {
            writeMatrix(elements, rows);
        }
    }

    void writeList(std::span<const double> elements) {
        const auto isFinite = [](double element) { return std::isfinite(element); };
        if (std::ranges::all_of(elements, isFinite)) {
            json_.numbers(elements);
        } else {
            writeElements(elements);
        }
    }

    void writeList(std::span<const unsigned char> elements) { writeElements(elements); }

    template <typename Element>
    void writeElements(std::span<const Element> elements) {
        json_.startArray();
        for (std::size_t i = 0; i < elements.size(); ++i) {
            writeElement(elements[i], [=] { return fmt::format("/{}", i); });
        }
        json_.endArray();
    }

    template <typename Element>
    void writeMatrix(std::span<const Element> elements, std::size_t rows) {
        json_.startArray();
        for (std::size_t row = 0; row < rows; ++row) {
            json_.startArray();
            for (std::size_t i = row; i < elements.size(); i += rows) {
                writeElement(elements[i], [=] { return fmt::format("/{}/{}", row, i / rows); });
            }
            json_.endArray();
        }
        json_.endArray();
    }

    /// `within` returns the place in the array, for those elements that need one.
    template <typename Within>
    void writeElement(double number, Within within) {
        if (std::isfinite(number)) {
            json_.number(number);
            return;
        }
        json_.null();
        BoundedText& list = next(nonfinite_);
        list.append(R"({"at":)");
        appendText(list, here() + within());
        list.append(R"(,"is":")");
        list.append(nameOf(number));
        list.append("\"}");
    }

    template <typename Within>
    void writeElement(unsigned char logical, Within /*within*/) {
        json_.boolean(logical != 0);
    }

    void omit(zephra::Value value) {
        json_.null();
        const std::size_t rows = value.dimensions().front();
        BoundedText& list = next(omitted_);
        list.append(R"({"at":)");
        appendText(list, here());
        list.append(fmt::format(R"(,"size":[{},{}]}})", rows, value.size() / rows));
    }

    /// The place of the value that is being written.
    [[nodiscard]] std::string here() const {
        std::string place = "/info";
        for (const Open& open : open_) {
            if (open.container.classCode() == qvClassCell) {
                appendStep(place, open.element - 1);
            } else {
                appendStep(place, open.element);
                appendStep(place, open.container.fieldName(open.field - 1));
            }
        }
        return place;
    }

    Allowance allowance_;
    std::optional<std::size_t> omitLargerThan_;
    SeenFields seen_;
    FieldSelection::Place root_;
    BoundedText body_{allowance_};
    BoundedText nonfinite_{allowance_};
    BoundedText latin1_{allowance_};
    BoundedText omitted_{allowance_};
    JsonWriter json_{body_};
    std::vector<Open> open_;
};

}  // namespace

JsonRenderer::JsonRenderer(const RenderOptions& options)
    : selection_(options.fields),
      omitLargerThan_(options.omitLargerThan),
      maxOutput_(options.maxOutput) {}

Rendering JsonRenderer::render(zephra::Value output) const {
    return Rendition(selection_, omitLargerThan_, maxOutput_).of(output);
}

bool JsonRenderer::accepts(const Rendering& rendering) const {
    const std::size_t size = rendering.body.size() + rendering.nonfinite.size() +
                             rendering.latin1.size() + rendering.omitted.size();
    return size <= maxOutput_ && isJsonArray(rendering.body) &&
           isListOf(ListedAs::nonfinite, rendering.nonfinite) &&
           isListOf(ListedAs::latin1, rendering.latin1) &&
           isListOf(ListedAs::omitted, rendering.omitted) &&
           (omitLargerThan_ || rendering.omitted.empty()) && rendering.cells.empty() &&
           areIndicesOf(selection_, rendering.fieldsSeen);
}

}  // namespace veltrace::cli

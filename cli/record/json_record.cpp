#include "record/json_record.h"

#include <cstddef>
#include <cstdint>
#include <fmt/format.h>
#include <limits>
#include <string_view>

#include "base64.h"
#include "render/json_text.h"
#include "render/json_writer.h"

namespace veltrace::cli {
namespace {

constexpr std::uint64_t kRecordVersion = 1;

/// The members of a record before its values.
class Head {
public:
    explicit Head(const Record& record) {
        json_.startObject();
        json_.key("v");
        json_.number(kRecordVersion);
        json_.key("seq");
        json_.number(record.id);
        writePath(record.path);
        json_.key("status");
        json_.text(nameOf(record.outcome.status));
        json_.key("error");
        writeError(record.outcome);
        json_.key("warnings");
        writeWarnings(record.outcome);
        json_.key("warnings_dropped");
        json_.number(record.outcome.warningsDropped);
        json_.key("elapsed_us");
        json_.number(record.outcome.elapsedMicroseconds);
    }

    /// Without the brace that ends the record.
    [[nodiscard]] const std::string& text() const { return text_.text(); }

    /// The places of its texts that are not UTF-8, as a list without brackets.
    [[nodiscard]] const std::string& latin1() const { return latin1_; }

private:
    void writePath(std::string_view path) {
        if (isUtf8(path)) {
            json_.key("path");
            json_.text(path);
        } else {
            json_.key("path_b64");
            json_.text(base64(path));
        }
    }

    void writeError(const Outcome& outcome) {
        if (outcome.error) {
            writeMessage(*outcome.error, "/error");
        } else {
            json_.null();
        }
    }

    void writeWarnings(const Outcome& outcome) {
        json_.startArray();
        for (std::size_t i = 0; i < outcome.warnings.size(); ++i) {
            writeMessage(outcome.warnings[i], fmt::format("/warnings/{}", i));
        }
        json_.endArray();
    }

    void writeMessage(const zephra::Message& message, std::string_view place) {
        json_.startObject();
        json_.key("id");
        writeText(message.identifier, place, "id");
        json_.key("text");
        writeText(message.text, place, "text");
        json_.endObject();
    }

    void writeText(std::string_view bytes, std::string_view place, std::string_view member) {
        if (!json_.text(bytes)) {
            latin1_ += fmt::format(R"({}"{}/{}")", latin1_.empty() ? "" : ",", place, member);
        }
    }

    // The size of an answer is limited when it is received.
    Allowance allowance_{std::numeric_limits<std::size_t>::max()};
    BoundedText text_{allowance_};
    JsonWriter json_{text_};
    std::string latin1_;
};

void appendList(std::string& out, std::string_view name, std::string_view elements) {
    out += ",\"";
    out += name;
    out += "\":[";
    out += elements;
    out += ']';
}

std::string joined(const std::string& first, const std::string& second) {
    return first.empty() || second.empty() ? first + second : first + ',' + second;
}

}  // namespace

JsonRecordWriter::JsonRecordWriter(const RenderOptions& options)
    : isArray_(options.format == Format::json), listsOmitted_(options.omitLargerThan.has_value()) {}

void JsonRecordWriter::begin(std::string& out) {
    if (isArray_) {
        out += '[';
    }
}

void JsonRecordWriter::record(const Record& record, std::string& out) {
    if (isArray_) {
        out += isFirst_ ? "\n" : ",\n";
        isFirst_ = false;
    }
    const Head head(record);
    out += head.text();
    const Rendering& rendering = record.outcome.rendering;
    out += ",\"info\":";
    out += rendering.body.empty() ? std::string_view("[]") : rendering.body;
    appendList(out, "nonfinite", rendering.nonfinite);
    appendList(out, "latin1", joined(head.latin1(), rendering.latin1));
    if (listsOmitted_) {
        appendList(out, "omitted", rendering.omitted);
    }
    out += isArray_ ? "}" : "}\n";
}

void JsonRecordWriter::end(std::string& out) {
    if (isArray_) {
        out += "\n]\n";
    }
}

}  // namespace veltrace::cli

#include "json_output.h"

#include "render/json_value.h"

namespace veltrace::cli {
namespace {

std::string_view statusOf(const zephra::CallResult& result) {
    if (result.error()) {
        return "error";
    }
    return result.warnings().empty() ? "ok" : "warned";
}

void writeMessage(JsonWriter& json, const zephra::Message& message) {
    json.StartObject();
    json.Key("id");
    writeJson(json, message.identifier);
    json.Key("text");
    writeJson(json, message.text);
    json.EndObject();
}

void writeError(JsonWriter& json, const zephra::CallResult& result) {
    if (result.error()) {
        writeMessage(json, *result.error());
    } else {
        json.Null();
    }
}

void writeWarnings(JsonWriter& json, const zephra::CallResult& result) {
    json.StartArray();
    for (const zephra::Message& warning : result.warnings()) {
        writeMessage(json, warning);
    }
    json.EndArray();
}

void writeInfo(JsonWriter& json, zephra::Value output) {
    if (output.empty()) {
        json.StartArray();
        json.EndArray();
    } else {
        writeJson(json, output);
    }
}

}  // namespace

void JsonOutput::begin() {
    out_ << '[';
}

void JsonOutput::file(std::string_view path, const zephra::CallResult& result) {
    out_ << (isFirst_ ? "\n" : ",\n");
    isFirst_ = false;

    JsonStream stream(out_);
    JsonWriter json(stream);
    json.StartObject();
    json.Key("path");
    writeJson(json, path);
    json.Key("status");
    writeJson(json, statusOf(result));
    json.Key("error");
    writeError(json, result);
    json.Key("warnings");
    writeWarnings(json, result);
    json.Key("info");
    writeInfo(json, result.output());
    json.EndObject();
}

void JsonOutput::end() {
    out_ << "\n]\n";
}

}  // namespace veltrace::cli

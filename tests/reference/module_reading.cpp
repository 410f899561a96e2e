// Reads files with the module and prints its output and messages, one line of JSON for each.
//
// Standard input is a sequence of requests, each "BUDGET LARGEST NAME" and a NUL: how many blocks
// the call may ask for (0: any number), its largest block in bytes, and the name of the file.
#include <charconv>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "zephra/host/host.h"
#include "zephra/qvx.h"

#include "reference/value_json.h"
#include "support/leak_tolerance.h"

namespace veltrace::test {
namespace {

struct Request {
    zephra::Settings settings;
    std::string name;
};

template <class Number>
Number takeNumber(std::string_view& text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (error != std::errc() || !text.starts_with(' ')) {
        throw std::invalid_argument("a request is \"BUDGET LARGEST NAME\"");
    }
    text.remove_prefix(1);
    return number;
}

Request parsed(std::string_view line) {
    Request request;
    request.settings.strict = true;
    request.settings.blockBudget = takeNumber<std::uint64_t>(line);
    request.settings.largestBlock = takeNumber<std::size_t>(line);
    request.name = line;
    return request;
}

zephra::CallResult read(const Request& request) {
    // A call that ends with an error while its output is built leaves its reader behind.
    const LeakTolerance tolerance;
    const zephra::Argument arguments[] = {request.name};
    return zephra::Host(request.settings).call(&qvxFunction, arguments);
}

void writeMessage(JsonWriter& writer, const zephra::Message& message) {
    writer.StartArray();
    writeBytes(writer, message.identifier);
    writeBytes(writer, message.text);
    writer.EndArray();
}

/// Blocks and arrays. A call that ends with an error leaves what it had begun.
void writeLeftovers(JsonWriter& writer, const zephra::CallResult& result) {
    if (result.error()) {
        writer.Null();
        return;
    }
    writer.StartArray();
    writer.Uint64(result.leftovers().blocks);
    writer.Uint64(result.leftovers().arrays);
    writer.EndArray();
}

std::string reading(const zephra::CallResult& result) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writer.Key("output");
    writeValue(writer, result.output());
    writer.Key("warnings");
    writer.StartArray();
    for (const zephra::Message& warning : result.warnings()) {
        writeMessage(writer, warning);
    }
    writer.EndArray();
    writer.Key("error");
    if (result.error()) {
        writeMessage(writer, *result.error());
    } else {
        writer.Null();
    }
    writer.Key("leftovers");
    writeLeftovers(writer, result);
    writer.Key("misuses");
    writer.StartArray();
    for (const std::string& misuse : result.misuses()) {
        writeBytes(writer, misuse);
    }
    writer.EndArray();
    writer.EndObject();
    return {buffer.GetString(), buffer.GetSize()};
}

void readAll() {
    std::string line;
    while (std::getline(std::cin, line, '\0')) {
        // Flushed, so that whoever asked knows which file a reading that dies was about.
        std::cout << reading(read(parsed(line))) << '\n' << std::flush;
    }
}

}  // namespace
}  // namespace veltrace::test

int main() {
    int status = 0;
    // On a thread of its own: for the main thread, asking where the stack ends reads a table of the
    // system, in every call that reads a nested directory.
    std::thread([&status] {
        try {
            veltrace::test::readAll();
        } catch (const std::exception& error) {
            std::cerr << "module-reading: " << error.what() << '\n';
            status = 2;
        }
    }).join();
    return status;
}

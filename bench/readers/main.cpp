// The command `bench-readers`: times of readers on the same files in one process and thread, as
// JSON. `bench/compare` runs it and prints tables of its output.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <malloc.h>
#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>
#include <stdexcept>

#include "readers/peak.h"
#include "readers/rounds.h"

namespace {

using namespace veltrace::bench;

struct Options {
    std::string module = VELTRACE_MODULE_PATH;
    std::vector<std::string> readers;
    std::vector<std::string> files;
    std::string filesFrom;
    std::string warmUp;
    unsigned rounds = 15;
    std::size_t minReads = 1;
    bool peak = false;
};

using Json = rapidjson::PrettyWriter<rapidjson::OStreamWrapper>;

void writeString(Json& json, const char* key, std::string_view text) {
    json.Key(key);
    json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void writeNumber(Json& json, const char* key, std::uint64_t number) {
    json.Key(key);
    json.Uint64(number);
}

void writeDelivered(Json& json, const Delivered& delivered) {
    writeNumber(json, "directories", delivered.directories);
    writeNumber(json, "entries", delivered.entries);
    writeNumber(json, "values", delivered.values);
    writeNumber(json, "refused", delivered.refused);
}

void writeCourse(Json& json, const Course& course) {
    json.StartObject();
    writeString(json, "reader", course.reader);
    writeDelivered(json, course.delivered);
    json.Key("rounds_ns");
    json.SetFormatOptions(rapidjson::kFormatSingleLineArray);
    json.StartArray();
    for (const std::uint64_t round : course.rounds) {
        json.Uint64(round);
    }
    json.EndArray();
    json.SetFormatOptions(rapidjson::kFormatDefault);
    json.EndObject();
}

void writeRounds(Json& json, const Options& options, Readers& readers) {
    json.StartArray();
    for (FileSet& set : setsOf(options.files)) {
        measure(set, readers, options.rounds, options.minReads);
        json.StartObject();
        writeString(json, "set", set.name);
        writeNumber(json, "files", set.files.size());
        json.Key("readers");
        json.StartArray();
        for (const Course& course : set.courses) {
            writeCourse(json, course);
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
}

void writePeak(Json& json, const Options& options, Reader& reader) {
    if (!options.warmUp.empty()) {
        reader.read(options.warmUp);
    }
    const Peak peak = peakOf(reader, options.files.front());
    json.StartObject();
    writeString(json, "reader", reader.name());
    writeNumber(json, "peak_bytes", peak.bytes);
    writeNumber(json, "elapsed_ns", peak.nanoseconds);
    json.EndObject();
}

void keepNamed(Readers& readers, const std::vector<std::string>& names) {
    if (!names.empty()) {
        std::erase_if(readers, [&](const auto& reader) {
            return std::ranges::find(names, reader->name()) == names.end();
        });
    }
}

void addListed(Options& options) {
    if (options.filesFrom.empty()) {
        return;
    }
    std::ifstream list(options.filesFrom);
    if (!list) {
        throw std::runtime_error("cannot read " + options.filesFrom);
    }
    for (std::string line; std::getline(list, line);) {
        options.files.push_back(line);
    }
}

void run(Options options) {
    addListed(options);
    Readers readers = allReaders(options.module);
    keepNamed(readers, options.readers);
    rapidjson::OStreamWrapper stream(std::cout);
    Json json(stream);
    if (!options.peak) {
        writeRounds(json, options, readers);
    } else if (readers.size() == 1 && options.files.size() == 1) {
        writePeak(json, options, *readers.front());
    } else {
        throw std::runtime_error("--peak takes one reader and one file");
    }
    std::cout << '\n';
}

}  // namespace

namespace {

// For all readers alike, as the workers of the command do: the times are those of reading, not of
// getting the same pages from the system for each file.
void keepFreedMemory() {
    mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the most that it accepts
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MXFAST, 0);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Times readers of metadata on the same files and prints JSON.", "bench-readers");
    app.add_option("FILE", options.files, "Files to read");
    app.add_option("--files-from", options.filesFrom, "Names of more files, one in a line");
    app.add_option("--module", options.module, "The module to load");
    app.add_option("--readers", options.readers,
                   "Only these: veltrace, minimal, libtiff, libtiff-unmapped, libexif, exiv2")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--rounds", options.rounds, "How often each set is read")->capture_default_str();
    app.add_option("--min-reads", options.minReads,
                   "How many files a reader reads in a round, a small set again and again")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    app.add_flag("--peak", options.peak, "Read one file once and print the growth of memory");
    app.add_option("--warm-up", options.warmUp, "With --peak: a file to read before");
    CLI11_PARSE(app, argc, argv);
    try {
        if (!options.peak) {
            keepFreedMemory();
        }
        run(std::move(options));
    } catch (const std::exception& error) {
        std::cerr << "bench-readers: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

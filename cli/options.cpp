#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <thread>

#include "amount.h"
#include "option_kinds.h"
#include "record/json_record.h"
#include "render/escape.h"
#include "worker/sandbox.h"

namespace veltrace::cli {
namespace {

constexpr char kDescription[] =
    "Prints the metadata of TIFF and BigTIFF files, and of the Exif block of JPEG files.\n"
    "Files are read in separate processes, so that a damaged file affects no other.";
constexpr char kFooter[] =
    R"(SIZE is a number of bytes, optionally followed by K, M, G or T, such as 64M or 2G.

Standard output contains data only. With text and csv, warnings and errors go to standard error;
with json and ndjson they are in the records.

Exit status: 0 when every file was read, 1 when some file failed, 2 for wrong usage, 3 when the
output could not be written, 4 when no process to read files could be started, and 128 + N after
signal N.

Examples:
  veltrace photo.tif
  veltrace -f Make -f DigitalCamera.FNumber photo.tif
  veltrace -r --ndjson -o records.ndjson photos
  veltrace -r --format csv -f Width -f Height photos
  veltrace -r --ndjson --shard 1/4 -o records-1.ndjson photos)";

constexpr char kInput[] = "Input";
constexpr char kOutput[] = "Output";
constexpr char kReading[] = "Reading";
/// Longer than any run, and within the range of chrono.
constexpr double kMaxSeconds = 1e6;
constexpr double kMinSeconds = 0.001;
constexpr std::uint64_t kMaxJobs = 256;
constexpr std::uint64_t kMinOutput = std::uint64_t{1} << 10;
constexpr std::uint64_t kMaxOutput = std::uint64_t{3} << 30;

const std::map<std::string, Format> kFormats{{"text", Format::text},
                                             {"json", Format::json},
                                             {"ndjson", Format::ndjson},
                                             {"csv", Format::csv}};
const std::map<std::string, FailOn> kFailOns{
    {"error", FailOn::error}, {"warning", FailOn::warning}, {"never", FailOn::never}};
const std::map<std::string, When> kWhens{
    {"auto", When::automatic}, {"always", When::always}, {"never", When::never}};
const std::map<std::string, bool> kIsolations{{"on", true}, {"off", false}};
const std::map<std::string, bool> kSandboxes{{"auto", true}, {"off", false}};

void addInputOptions(CLI::App& app, Options& options) {
    addFlag(app, "-r,--recursive", "Read the images below directories, in the order of their names",
            [&options] { options.isRecursive = true; })
        ->group(kInput);
    addTexts(app, "--files-from", options.lists, "LIST",
             "Read the files listed in LIST, one per line; - is standard input")
        ->group(kInput);
    addTexts(app, "--files0-from", options.nulLists, "LIST",
             "Read the files listed in LIST, a NUL after each")
        ->group(kInput);
    app.add_option_function<std::string>(
           "--shard",
           [&options](const std::string& text) {
               options.shard = parseShard(text);
               if (!options.shard) {
                   throw CLI::ValidationError(
                       fmt::format("--shard: \"{}\" is not I/N with 1 <= I <= N", text));
               }
           },
           "Read the I-th of N parts; a file's part depends on its name only")
        ->option_text("I/N")
        ->group(kInput);
    addFileName(app, "--resume-from", options.resumeFrom, "OUT",
                "Skip files that have a record in this output of --ndjson")
        ->group(kInput);
}

void addOutputOptions(CLI::App& app, Options& options) {
    RenderOptions& render = options.render;
    auto* const format = addChoice(app, "--format", render.format, kFormats, "text|json|ndjson|csv",
                                   "The format of the output (text)")
                             ->group(kOutput);
    auto* const json = addFlag(app, "--json", "As --format json: one array with a record per file",
                               [&render] { render.format = Format::json; })
                           ->group(kOutput)
                           ->excludes(format);
    addFlag(app, "--ndjson", "As --format ndjson: a record per line",
            [&render] { render.format = Format::ndjson; })
        ->group(kOutput)
        ->excludes(format)
        ->excludes(json);
    addTexts(app, "-f,--field", render.fields, "NAME",
             "Print this field, as Make or DigitalCamera.FNumber; may be repeated")
        ->group(kOutput);
    addAmount(app, "--max-values", render.maxValues, parseCount, {}, "a whole number", "N",
              "Values of an array shown in text (12)")
        ->group(kOutput);
    addAmount(app, "--omit-larger-than", render.omitLargerThan, parseCount, {}, "a whole number",
              "N", "Omit values with more than N elements from json, and list them")
        ->group(kOutput);
    addFileName(app, "-o,--output", options.output, "OUT",
                "Write to this file, which appears when it is complete")
        ->group(kOutput);
    auto* const ordered =
        addFlag(app, "--ordered", "Print records in the order of the files (all but ndjson)",
                [&options] { options.ordered = When::always; })
            ->group(kOutput);
    addFlag(app, "--no-ordered", "Print records as they are ready",
            [&options] { options.ordered = When::never; })
        ->group(kOutput)
        ->excludes(ordered);
    addChoice(app, "--color", options.colour, kWhens, "auto|always|never",
              "Colour text (auto: on a terminal, unless NO_COLOR is set)")
        ->group(kOutput);
    auto* const progress = addFlag(app, "--progress", "Show the progress of the run", [&options] {
                               options.progress = When::always;
                           })->group(kOutput);
    addFlag(app, "--no-progress", "Never show it (shown on a terminal after a second)",
            [&options] { options.progress = When::never; })
        ->group(kOutput)
        ->excludes(progress);
    addFileName(app, "--summary", options.summary, "OUT",
                "Write statistics of the run to this file, as JSON")
        ->group(kOutput);
    addChoice(app, "--fail-on", options.failOn, kFailOns, "error|warning|never",
              "What makes the exit status 1 (error)")
        ->group(kOutput);
}

void addReadingOptions(CLI::App& app, Options& options) {
    addAmount(app, "-j,--jobs", options.jobs, parseCount, {1, kMaxJobs},
              "a whole number from 1 to 256", "N", "Processes that read files (one per core)")
        ->group(kReading);
    app.add_option_function<double>(
           "--time-limit",
           [&options](double seconds) {
               // In this form it rejects NaN too.
               if (!(seconds >= kMinSeconds && seconds <= kMaxSeconds)) {
                   throw CLI::ValidationError(
                       "--time-limit: the time is not from 0.001 to 1000000 seconds");
               }
               options.timeLimit =
                   std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1000)));
           },
           "Time that one file may take (10)")
        ->option_text("SECONDS")
        ->group(kReading);
    addAmount(app, "--memory-limit", options.memoryLimit, parseSize, {}, "a size such as 64M",
              "SIZE", "Memory that one file may take, 0 for no limit (1G)")
        ->group(kReading);
    addAmount(app, "--output-limit", options.render.maxOutput, parseSize, {kMinOutput, kMaxOutput},
              "a size from 1K to 3G", "SIZE", "Bytes of output that one file may have (16M)")
        ->group(kReading);
    addChoice(app, "--isolation", options.isIsolated, kIsolations, "on|off",
              "off: read in this process, without limits; for trusted files")
        ->group(kReading);
    addChoice(app, "--sandbox", options.isSandboxed, kSandboxes, "auto|off",
              "off: read files without Landlock and seccomp; for debugging")
        ->group(kReading);
    addFileName(app, "--module", options.module, "PATH",
                "Load this module instead of the one next to the command")
        ->group(kReading);
}

std::string versionText() {
    return fmt::format("veltrace {}\nsandbox: {}\n", VELTRACE_VERSION,
                       describe(availableSandbox()));
}

/// An unknown option that CLI11 took for a file, if there is one: it does so with arguments such as
/// "-4", even with the rest of "-r4". A file with such a name must follow "--".
std::string strayFile(const std::vector<std::string>& files,
                      std::span<const char* const> arguments) {
    const auto mark = std::ranges::find(arguments, std::string_view("--"));
    std::multiset<std::string_view> named(mark, arguments.end());
    for (const std::string& file : files) {
        if (file.size() > 1 && file.front() == '-') {
            const auto found = named.find(file);
            if (found == named.end()) {
                return file;
            }
            named.erase(found);
        }
    }
    return {};
}

/// The error in a combination of options; empty: none.
std::string errorIn(const Options& options) {
    if (options.files.empty() && options.lists.empty() && options.nulLists.empty()) {
        return "FILE is required";
    }
    for (const std::string& field : options.render.fields) {
        if (field.empty()) {
            return "--field: a name is required";
        }
    }
    std::error_code ignored;
    if (std::filesystem::equivalent(options.output, options.resumeFrom, ignored)) {
        return "--output would replace the records that --resume-from continues";
    }
    return {};
}

Reply wrongUsage(std::string_view what) {
    return {fmt::format("veltrace: {}\nRun with --help for more information.\n", visible(what)),
            true};
}

}  // namespace

std::variant<Options, Reply> parseOptions(int argc, const char* const* argv) {
    CLI::App app(kDescription, "veltrace");
    app.footer(kFooter);
    app.formatter(std::make_shared<HelpText>());
    bool wantsVersion = false;
    bool wantsSchema = false;
    app.add_flag("--version", wantsVersion,
                 "Print the version, and the sandbox that this machine provides");
    app.add_flag("--schema", wantsSchema, "Print the JSON Schema of a record");

    Options options;
    options.jobs = std::max(1U, std::thread::hardware_concurrency());
    const CLI::Option* const files = addFiles(app);
    addInputOptions(app, options);
    addOutputOptions(app, options);
    addReadingOptions(app, options);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return Reply{app.help()};
    } catch (const CLI::ParseError& error) {
        return wrongUsage(error.what());
    }
    if (wantsVersion) {
        return Reply{versionText()};
    }
    if (wantsSchema) {
        return Reply{std::string(recordSchema())};
    }
    options.files = files->results();
    if (const std::string stray = strayFile(options.files, {argv, argv + argc}); !stray.empty()) {
        return wrongUsage(fmt::format("{}: unknown option", stray));
    }
    if (const std::string error = errorIn(options); !error.empty()) {
        return wrongUsage(error);
    }
    return options;
}

}  // namespace veltrace::cli

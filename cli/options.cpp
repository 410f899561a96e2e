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
#include "record/record_schema.h"
#include "render/escape.h"
#include "version.h"
#include "worker/confinement.h"

namespace veltrace::cli {
namespace {

constexpr char kDescription[] =
    "Prints the metadata of TIFF and BigTIFF files, and of the Exif block of JPEG files.\n"
    "Files are read by processes of their own, so that a damaged one costs no other.";
constexpr char kFooter[] =
    R"(SIZE is a number of bytes, or one with K, M, G or T behind it, such as 64M or 2G.

Standard output carries data only. With text and csv, warnings and errors go to standard error;
with json and ndjson they are in the records.

Exit status: 0 when every file was read, 1 when some file failed, 2 for wrong usage, 3 when the
output could not be written, 4 when files cannot be read for want of processes, and 128 + N after
signal N.

Examples:
  veltrace photo.tif
  veltrace -f Make -f DigitalCamera.FNumber photo.tif
  veltrace -r --ndjson -o records.ndjson photos
  veltrace -r --format csv -f Width -f Height photos
  veltrace -r --ndjson --shard 1/4 -o records-1.ndjson photos)";

constexpr char kWhichFiles[] = "Which files";
constexpr char kWhatComesOut[] = "What comes out";
constexpr char kHowFilesAreRead[] = "How files are read";
/// Longer than any run; what chrono can count.
constexpr double kMostSeconds = 1e6;
constexpr double kFewestSeconds = 0.001;
constexpr std::uint64_t kMostJobs = 256;
constexpr std::uint64_t kSmallestOutput = std::uint64_t{1} << 10;
constexpr std::uint64_t kLargestOutput = std::uint64_t{3} << 30;

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

void addWhichFiles(CLI::App& app, Options& options) {
    addFlag(app, "-r,--recursive", "Read the images below directories, in the order of their names",
            [&options] { options.isRecursive = true; })
        ->group(kWhichFiles);
    addTexts(app, "--files-from", options.lists, "LIST",
             "Read the files that LIST names, one in a line; - is standard input")
        ->group(kWhichFiles);
    addTexts(app, "--files0-from", options.nulLists, "LIST",
             "Read the files that LIST names, a NUL after each")
        ->group(kWhichFiles);
    app.add_option_function<std::string>(
           "--shard",
           [&options](const std::string& text) {
               options.shard = parseShard(text);
               if (!options.shard) {
                   throw CLI::ValidationError(
                       fmt::format("--shard: \"{}\" is not I/N with 1 <= I <= N", text));
               }
           },
           "Read the I-th of N parts, to which files belong by their names alone")
        ->option_text("I/N")
        ->group(kWhichFiles);
    addFileName(app, "--resume-from", options.resumeFrom, "OUT",
                "Pass over files that have a record in this output of --ndjson")
        ->group(kWhichFiles);
}

void addWhatComesOut(CLI::App& app, Options& options) {
    RenderOptions& render = options.render;
    auto* const format = addChoice(app, "--format", render.format, kFormats, "text|json|ndjson|csv",
                                   "The format of the output (text)")
                             ->group(kWhatComesOut);
    auto* const json = addFlag(app, "--json", "As --format json: one array with a record per file",
                               [&render] { render.format = Format::json; })
                           ->group(kWhatComesOut)
                           ->excludes(format);
    addFlag(app, "--ndjson", "As --format ndjson: a record per line",
            [&render] { render.format = Format::ndjson; })
        ->group(kWhatComesOut)
        ->excludes(format)
        ->excludes(json);
    addTexts(app, "-f,--field", render.fields, "NAME",
             "Print this field, as Make or DigitalCamera.FNumber; may be repeated")
        ->group(kWhatComesOut);
    addAmount(app, "--max-values", render.maxValues, parseCount, {}, "a whole number", "N",
              "Values of an array that text shows (12)")
        ->group(kWhatComesOut);
    addAmount(app, "--omit-larger-than", render.omitLargerThan, parseCount, {}, "a whole number",
              "N", "Leave values with more than N elements out of json, and say so")
        ->group(kWhatComesOut);
    addFileName(app, "-o,--output", options.output, "OUT",
                "Write to this file, which appears when it is whole")
        ->group(kWhatComesOut);
    auto* const ordered =
        addFlag(app, "--ordered", "Print records in the order of the files (all but ndjson)",
                [&options] { options.ordered = When::always; })
            ->group(kWhatComesOut);
    addFlag(app, "--no-ordered", "Print records as they come",
            [&options] { options.ordered = When::never; })
        ->group(kWhatComesOut)
        ->excludes(ordered);
    addChoice(app, "--color", options.colour, kWhens, "auto|always|never",
              "Colour text (auto: on a terminal, unless NO_COLOR is set)")
        ->group(kWhatComesOut);
    auto* const progress = addFlag(app, "--progress", "Show how far the run is", [&options] {
                               options.progress = When::always;
                           })->group(kWhatComesOut);
    addFlag(app, "--no-progress", "Never show it (shown on a terminal after a second)",
            [&options] { options.progress = When::never; })
        ->group(kWhatComesOut)
        ->excludes(progress);
    addFileName(app, "--summary", options.summary, "OUT",
                "Write numbers of the run to this file, as JSON")
        ->group(kWhatComesOut);
    addChoice(app, "--fail-on", options.failOn, kFailOns, "error|warning|never",
              "What makes the exit status 1 (error)")
        ->group(kWhatComesOut);
}

void addHowFilesAreRead(CLI::App& app, Options& options) {
    addAmount(app, "-j,--jobs", options.jobs, parseCount, {1, kMostJobs},
              "a whole number from 1 to 256", "N", "Processes that read files (one per core)")
        ->group(kHowFilesAreRead);
    app.add_option_function<double>(
           "--time-limit",
           [&options](double seconds) {
               // Not the other way round: a NaN is no time either.
               if (!(seconds >= kFewestSeconds && seconds <= kMostSeconds)) {
                   throw CLI::ValidationError(
                       "--time-limit: the time is not from 0.001 to 1000000 seconds");
               }
               options.timeLimit =
                   std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1000)));
           },
           "Time that one file may take (10)")
        ->option_text("SECONDS")
        ->group(kHowFilesAreRead);
    addAmount(app, "--memory-limit", options.memoryLimit, parseSize, {}, "a size such as 64M",
              "SIZE", "Memory that one file may take, 0 for any (1G)")
        ->group(kHowFilesAreRead);
    addAmount(app, "--output-limit", options.render.largestOutput, parseSize,
              {kSmallestOutput, kLargestOutput}, "a size from 1K to 3G", "SIZE",
              "Bytes of output that one file may make (16M)")
        ->group(kHowFilesAreRead);
    addChoice(app, "--isolation", options.isIsolated, kIsolations, "on|off",
              "off: read in this process, without limits; for trusted files")
        ->group(kHowFilesAreRead);
    addChoice(app, "--sandbox", options.isSandboxed, kSandboxes, "auto|off",
              "off: read files without Landlock and seccomp; for debugging")
        ->group(kHowFilesAreRead);
    addFileName(app, "--module", options.module, "PATH",
                "Load this module instead of the one next to the command")
        ->group(kHowFilesAreRead);
}

std::string versionText() {
    return fmt::format("veltrace {}\nconfinement: {}\n", kVersion,
                       describe(availableConfinement()));
}

/// A file that nobody named, if there is one. What stands behind a hyphen and is no option at all,
/// such as "-4", CLI11 takes for the name of a file, even when it is the rest of "-r4"; a file of
/// such a name stands behind "--".
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

/// What is wrong with options that are right one by one.
std::string complaintAbout(const Options& options) {
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
        return "--output would replace the records that --resume-from goes on from";
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
                 "Print the version, and how this machine confines the reading of files");
    app.add_flag("--schema", wantsSchema, "Print the JSON Schema of a record");

    Options options;
    options.jobs = std::max(1U, std::thread::hardware_concurrency());
    const CLI::Option* const files = addFiles(app);
    addWhichFiles(app, options);
    addWhatComesOut(app, options);
    addHowFilesAreRead(app, options);

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
        return wrongUsage(fmt::format("{}: there is no such option", stray));
    }
    if (const std::string complaint = complaintAbout(options); !complaint.empty()) {
        return wrongUsage(complaint);
    }
    return options;
}

}  // namespace veltrace::cli

#include "options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <fmt/format.h>
#include <map>
#include <thread>

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
    R"(SIZE is a number of bytes, or one with a suffix such as 64M or 2G.

Standard output carries data only. With text and csv, warnings and errors go to standard error;
with json and ndjson they are in the records.

Exit status: 0 when every file was read, 1 when some file failed, 2 for wrong usage, 3 when the
output could not be written, 4 when files cannot be read for want of processes, and 128 + N after
signal N.)";

constexpr char kWhichFiles[] = "Which files";
constexpr char kWhatComesOut[] = "What comes out";
constexpr char kHowFilesAreRead[] = "How files are read";
/// Longer than any run; what chrono can count.
constexpr double kMostSeconds = 1e6;

const std::map<std::string, Format> kFormats{{"text", Format::text},
                                             {"json", Format::json},
                                             {"ndjson", Format::ndjson},
                                             {"csv", Format::csv}};
const std::map<std::string, FailOn> kFailOns{
    {"error", FailOn::error}, {"warning", FailOn::warning}, {"never", FailOn::never}};
const std::map<std::string, When> kWhens{
    {"auto", When::automatic}, {"always", When::always}, {"never", When::never}};
const std::map<std::string, bool> kSwitches{{"on", true}, {"auto", true}, {"off", false}};

/// One of the names in `values`. Its message names them all.
template <class Value>
CLI::Option* addChoice(CLI::App& app, const std::string& name, Value& value,
                       const std::map<std::string, Value>& values, const char* shown,
                       const std::string& description) {
    return app
        .add_option_function<std::string>(
            name,
            [&value, &values, name, shown](const std::string& text) {
                const auto found = values.find(text);
                if (found == values.end()) {
                    throw CLI::ValidationError(
                        fmt::format("{}: \"{}\" is none of {}", name, text, shown));
                }
                value = found->second;
            },
            description)
        ->option_text(shown);
}

CLI::Option* addFlag(CLI::App& app, const std::string& name, const std::string& description,
                     const std::function<void()>& action) {
    return app.add_flag_callback(name, action, description);
}

CLI::Option* addFiles(CLI::App& app) {
    constexpr int kMany = CLI::detail::expected_max_vector_size;
    // A list that takes extra arguments would read the file name "[a,b]" as two names.
    return app.add_option("FILE", "Files to read, and with -r directories")
        ->option_text("...")
        ->expected(kMany, kMany)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

/// An option that may be given again; each time it takes one text as it is.
CLI::Option* addTexts(CLI::App& app, const std::string& name, std::vector<std::string>& texts,
                      const char* shown, const std::string& description) {
    return app
        .add_option_function<std::vector<std::string>>(
            name, [&texts](const std::vector<std::string>& given) { texts = given; }, description)
        ->option_text(shown)
        ->allow_extra_args(false)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

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
           "Read the I-th of N parts of the files, which depends on their names alone")
        ->option_text("I/N")
        ->group(kWhichFiles);
    app.add_option("--resume-from", options.resumeFrom,
                   "Pass over files that have a record in this output of --ndjson")
        ->option_text("OUT")
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
             "Print this field alone, such as Make or DigitalCamera.FNumber; may be given again")
        ->group(kWhatComesOut);
    app.add_option("--max-values", render.maxValues, "Values of an array that text shows (12)")
        ->option_text("N")
        ->group(kWhatComesOut);
    app.add_option("--omit-larger-than", render.omitLargerThan,
                   "Leave values with more than N elements out of json, and say so")
        ->option_text("N")
        ->group(kWhatComesOut);
    app.add_option("-o,--output", options.output,
                   "Write to this file, which appears when it is whole")
        ->option_text("OUT")
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
    app.add_option("--summary", options.summary, "Write numbers of the run to this file, as JSON")
        ->option_text("OUT")
        ->group(kWhatComesOut);
    addChoice(app, "--fail-on", options.failOn, kFailOns, "error|warning|never",
              "What makes the exit status 1 (error)")
        ->group(kWhatComesOut);
}

void addHowFilesAreRead(CLI::App& app, Options& options) {
    app.add_option("-j,--jobs", options.jobs, "Processes that read files (one per core)")
        ->option_text("N")
        ->check(CLI::Range(1, 256))
        ->group(kHowFilesAreRead);
    app.add_option_function<double>(
           "--time-limit",
           [&options](double seconds) {
               options.timeLimit =
                   std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1000)));
           },
           "Time that one file may take (10)")
        ->option_text("SECONDS")
        ->check(CLI::Range(0.001, kMostSeconds))
        ->group(kHowFilesAreRead);
    app.add_option("--memory-limit", options.memoryLimit,
                   "Memory that one file may take, 0 for any (1G)")
        ->option_text("SIZE")
        ->transform(CLI::AsSizeValue(false))
        ->group(kHowFilesAreRead);
    app.add_option("--output-limit", options.render.largestOutput,
                   "Bytes of output that one file may make (16M)")
        ->option_text("SIZE")
        ->transform(CLI::AsSizeValue(false))
        ->check(CLI::Range(std::uint64_t{1} << 10, std::uint64_t{3} << 30))
        ->group(kHowFilesAreRead);
    addChoice(app, "--isolation", options.isIsolated, kSwitches, "on|off",
              "off: read in this process, without limits; for trusted files")
        ->group(kHowFilesAreRead);
    addChoice(app, "--sandbox", options.isSandboxed, kSwitches, "auto|off",
              "off: let processes that read files do more than that; for debugging")
        ->group(kHowFilesAreRead);
    app.add_option_function<std::string>(
           "--module", [&options](const std::string& path) { options.module = path; },
           "Load this module instead of the one next to the command")
        ->option_text("PATH")
        ->group(kHowFilesAreRead);
}

std::string versionText() {
    return fmt::format("veltrace {}\nconfinement: {}\n", kVersion,
                       describe(availableConfinement()));
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
    if (const std::string complaint = complaintAbout(options); !complaint.empty()) {
        return wrongUsage(complaint);
    }
    return options;
}

}  // namespace veltrace::cli

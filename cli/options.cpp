#include "options.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "render/escape.h"
#include "version.h"

namespace veltrace::cli {
namespace {

constexpr char kDescription[] =
    "Prints the metadata of TIFF and BigTIFF files, and of the Exif block of JPEG files.";
constexpr char kFooter[] =
    "Warnings and errors go to standard error. The exit status is 0 when every file was read, 1 "
    "when\nsome file failed, 2 for wrong usage and 3 when the output could not be written.";

CLI::Option* addFiles(CLI::App& app) {
    constexpr int kMany = CLI::detail::expected_max_vector_size;
    // A list that takes extra arguments would read the file name "[a,b]" as two names.
    return app.add_option("FILE", "Files to read")
        ->required()
        ->option_text("...")
        ->expected(kMany, kMany)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace

std::variant<Options, Reply> parseOptions(int argc, const char* const* argv) {
    CLI::App app(kDescription, "veltrace");
    app.footer(kFooter);
    app.set_version_flag("--version", fmt::format("veltrace {}\n", kVersion), "Print the version");

    Options options;
    std::string module;
    app.add_flag("--json", options.json, "Print a JSON array with one object per file");
    app.add_option("--module", module, "Load this module instead of the one next to the command")
        ->option_text("PATH");
    const CLI::Option* const files = addFiles(app);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return Reply{app.help()};
    } catch (const CLI::CallForVersion& version) {
        return Reply{version.what()};
    } catch (const CLI::ParseError& error) {
        return Reply{fmt::format("veltrace: {}\nRun with --help for more information.\n",
                                 visible(error.what())),
                     true};
    }
    options.module = module;
    options.files = files->results();
    return options;
}

}  // namespace veltrace::cli

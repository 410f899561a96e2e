// Arguments of the command: options or what is wrong with them, and nothing else.
#include "options.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "amount.h"
#include "finding.h"
#include "fuzz_target.h"
#include "output_checks.h"
#include "parameters.h"

namespace veltrace::fuzz {
namespace {

using cli::Options;
using cli::Reply;
using Arguments = std::vector<std::string>;
using Parsed = std::variant<Options, Reply>;

Parsed parsed(const Arguments& arguments) {
    std::vector<const char*> texts;
    for (const std::string& argument : arguments) {
        texts.push_back(argument.c_str());
    }
    texts.push_back(nullptr);
    return cli::parseOptions(static_cast<int>(arguments.size()), texts.data());
}

/// As `main` may get it.
std::string madeArgument(Parameters& parameters, std::size_t most) {
    std::string argument = parameters.text(most);
    std::erase(argument, '\0');
    return argument;
}

// -- Amounts ---------------------------------------------------------------------------------

std::optional<std::uint64_t> expectedCount(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    const std::uint64_t count = std::strtoull(text.c_str(), nullptr, 10);
    return errno == 0 ? std::optional(count) : std::nullopt;
}

std::optional<std::uint64_t> expectedSize(const std::string& given) {
    std::string text = given;
    std::uint64_t factor = 1;
    for (const std::string_view unit : {"Kk", "Mm", "Gg", "Tt"}) {
        factor *= 1024;
        if (!text.empty() && unit.find(text.back()) != std::string_view::npos) {
            text.pop_back();
            const auto count = expectedCount(text);
            const bool fits = count && *count <= std::numeric_limits<std::uint64_t>::max() / factor;
            return fits ? std::optional(*count * factor) : std::nullopt;
        }
    }
    return expectedCount(text);
}

struct AmountOption {
    const char* name;
    std::optional<std::uint64_t> (*expected)(const std::string&);
    std::uint64_t least;
    std::uint64_t most;
    std::uint64_t (*value)(const Options&);
};

constexpr std::uint64_t kAny = std::numeric_limits<std::uint64_t>::max();
constexpr std::array kAmounts{
    AmountOption{"-j", expectedCount, 1, 256,
                 [](const Options& o) -> std::uint64_t { return o.jobs; }},
    AmountOption{"--jobs=", expectedCount, 1, 256,
                 [](const Options& o) -> std::uint64_t { return o.jobs; }},
    AmountOption{"--max-values=", expectedCount, 0, kAny,
                 [](const Options& o) -> std::uint64_t { return o.render.maxValues; }},
    AmountOption{"--omit-larger-than=", expectedCount, 0, kAny,
                 [](const Options& o) -> std::uint64_t { return o.render.omitLargerThan.value(); }},
    AmountOption{"--memory-limit=", expectedSize, 0, kAny,
                 [](const Options& o) -> std::uint64_t { return o.memoryLimit; }},
    AmountOption{"--output-limit=", expectedSize, std::uint64_t{1} << 10, std::uint64_t{3} << 30,
                 [](const Options& o) -> std::uint64_t { return o.render.maxOutput; }}};

void checkAmount(Parameters& parameters) {
    const AmountOption& option = kAmounts[parameters.upTo(kAmounts.size() - 1)];
    const std::string text = madeArgument(parameters, 30);
    require(cli::parseCount(text) == expectedCount(text), "a number is read as another");
    require(cli::parseSize(text) == expectedSize(text), "a size is read as another");
    const auto amount = option.expected(text);
    const bool isRight = amount && *amount >= option.least && *amount <= option.most;
    const Parsed result = parsed({"veltrace", option.name + text, "--", "file"});
    const auto* const options = std::get_if<Options>(&result);
    require((options != nullptr) == isRight,
            "an amount is taken beyond its range or refused within");
    require(options == nullptr || option.value(*options) == *amount,
            "an option has another amount");
}

// -- All options -------------------------------------------------------------------------------

constexpr std::array<const char*, 32> kNames{"-r",
                                             "--recursive",
                                             "--files-from",
                                             "--files0-from",
                                             "--shard",
                                             "--resume-from",
                                             "--format",
                                             "--json",
                                             "--ndjson",
                                             "-f",
                                             "--field",
                                             "--max-values",
                                             "--omit-larger-than",
                                             "-o",
                                             "--output",
                                             "--ordered",
                                             "--no-ordered",
                                             "--color",
                                             "--progress",
                                             "--no-progress",
                                             "--summary",
                                             "--fail-on",
                                             "-j",
                                             "--jobs",
                                             "--time-limit",
                                             "--memory-limit",
                                             "--output-limit",
                                             "--isolation",
                                             "--sandbox",
                                             "--module",
                                             "--help",
                                             "--version"};
constexpr std::array<const char*, 16> kValues{"text",  "json",    "ndjson", "csv", "auto", "always",
                                              "never", "warning", "error",  "on",  "off",  "1/2",
                                              "2/1",   "64M",     "0.001",  "1e7"};

std::string madeValue(Parameters& parameters) {
    const std::size_t choice = parameters.upTo(2 * kValues.size());
    return choice < kValues.size() ? kValues[choice] : madeArgument(parameters, 20);
}

/// Options with and without values, and texts of any kind.
Arguments madeArguments(Parameters& parameters) {
    Arguments arguments{madeArgument(parameters, 5)};
    for (std::size_t left = parameters.upTo(8); left > 0; --left) {
        const std::string name = kNames[parameters.upTo(kNames.size() - 1)];
        switch (parameters.upTo(3)) {
            case 0:
                arguments.push_back(name);
                break;
            case 1:
                arguments.push_back(name + '=' + madeValue(parameters));
                break;
            case 2:
                arguments.push_back(name);
                arguments.push_back(madeValue(parameters));
                break;
            default:
                arguments.push_back(madeArgument(parameters, 20));
        }
    }
    for (std::string_view rest = parameters.rest(); !rest.empty();) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        arguments.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return arguments;
}

/// Whether each of `names` is an argument, one behind the other.
bool areAmong(const Arguments& arguments, const std::vector<std::string>& names) {
    auto next = arguments.begin();
    return std::ranges::all_of(names, [&](const std::string& name) {
        next = std::find(next, arguments.end(), name);
        const bool isThere = next != arguments.end();
        next += isThere ? 1 : 0;
        return isThere;
    });
}

bool endsAnArgument(const Arguments& arguments, const std::string& text) {
    return std::ranges::any_of(
        arguments, [&](const std::string& argument) { return argument.ends_with(text); });
}

void checkOptions(const Options& options, const Arguments& arguments) {
    using std::chrono::milliseconds;
    require(areAmong(arguments, options.files), "a file has a name that is no argument");
    require(!options.files.empty() || !options.lists.empty() || !options.nulLists.empty(),
            "a run has no files");
    for (const auto* const texts : {&options.lists, &options.nulLists, &options.render.fields}) {
        for (const std::string& text : *texts) {
            require(endsAnArgument(arguments, text), "an option has a text that was not given");
        }
    }
    for (const std::string& name :
         {options.output, options.summary, options.resumeFrom, options.module.string()}) {
        require(endsAnArgument(arguments, name), "an option has a name that was not given");
    }
    require(std::ranges::count(options.render.fields, "") == 0, "a field has no name");
    require(options.jobs >= 1 && options.jobs <= 256, "jobs are out of their range");
    require(
        options.timeLimit >= milliseconds(1) && options.timeLimit <= milliseconds(1'000'000'000),
        "the time limit is out of its range");
    require(options.render.maxOutput >= 1024 && options.render.maxOutput <= std::size_t{3} << 30,
            "the limit of the output is out of its range");
    require(!options.shard ||
                (options.shard->index >= 1 && options.shard->index <= options.shard->count),
            "a part is none of the parts");
}

/// The texts that are printed instead of a run, which do not depend on the arguments.
bool isKnownAnswer(const std::string& text) {
    static const std::array<std::string, 3> kAnswers{
        std::get<Reply>(parsed({"veltrace", "--help"})).text,
        std::get<Reply>(parsed({"veltrace", "--version"})).text,
        std::get<Reply>(parsed({"veltrace", "--schema"})).text};
    return std::ranges::count(kAnswers, text) > 0;
}

void checkReply(const Reply& reply) {
    if (!reply.isError) {
        require(isKnownAnswer(reply.text), "an answer in place of a run is not one of three");
        return;
    }
    require(reply.text.starts_with("veltrace: "), "an error does not name the command");
    require(std::ranges::count(reply.text, '\n') == 2, "an error is not two lines");
    requireHarmlessText(reply.text, false);
}

void checkArguments(const Arguments& arguments) {
    const Parsed result = parsed(arguments);
    if (const auto* const options = std::get_if<Options>(&result)) {
        checkOptions(*options, arguments);
    } else {
        checkReply(std::get<Reply>(result));
    }
}

/// What stands behind a double dash is a file, whatever it looks like.
void checkDoubleDash(Parameters& parameters) {
    Arguments files;
    while (!parameters.atEnd()) {
        files.push_back(madeArgument(parameters, 30));
    }
    Arguments arguments{"veltrace", "-r", "--"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const Parsed result = parsed(arguments);
    const auto* const options = std::get_if<Options>(&result);
    require((options == nullptr) == files.empty(), "a name behind a double dash is refused");
    require(options == nullptr || options->files == files,
            "a name behind a double dash is taken for something else");
}

}  // namespace
}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    Parameters parameters(data, size);
    switch (parameters.upTo(5)) {
        case 0:
            checkDoubleDash(parameters);
            break;
        case 1:
        case 2:
            checkAmount(parameters);
            break;
        default:
            checkArguments(madeArguments(parameters));
    }
    return 0;
}

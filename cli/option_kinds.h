// The kinds of options of the command.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <fmt/format.h>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrace::cli {

/// One of the names in `values`. The error lists them all.
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
                        fmt::format("{}: \"{}\" is not one of {}", name, text, shown));
                }
                value = found->second;
            },
            description)
        ->option_text(shown);
}

struct Range {
    std::uint64_t min = 0;
    std::uint64_t max = std::numeric_limits<std::uint64_t>::max();
};

/// A number that `parse` reads and that lies in `range`, in short `expected`.
template <class Value>
CLI::Option* addAmount(CLI::App& app, const std::string& name, Value& value,
                       std::optional<std::uint64_t> (*parse)(std::string_view), Range range,
                       const char* expected, const char* shown, const std::string& description) {
    const std::string longName = name.substr(name.find("--"));
    return app
        .add_option_function<std::string>(
            name,
            [&value, parse, range, expected, longName](const std::string& text) {
                const auto amount = parse(text);
                if (!amount || *amount < range.min || *amount > range.max) {
                    throw CLI::ValidationError(
                        fmt::format("{}: \"{}\" is not {}", longName, text, expected));
                }
                value = *amount;
            },
            description)
        ->option_text(shown);
}

/// The name of a file. An empty one is rejected: a script forgot to set a variable.
template <class Name>
CLI::Option* addFileName(CLI::App& app, const std::string& name, Name& value, const char* shown,
                         const std::string& description) {
    return app
        .add_option_function<std::string>(
            name, [&value](const std::string& text) { value = text; }, description)
        ->option_text(shown)
        ->check([](const std::string& text) { return text.empty() ? "a name is required" : ""; });
}

/// Calls `action`.
CLI::Option* addFlag(CLI::App& app, const std::string& name, const std::string& description,
                     const std::function<void()>& action);

/// An option that may be repeated, with one text each time, taken as it is.
CLI::Option* addTexts(CLI::App& app, const std::string& name, std::vector<std::string>& texts,
                      const char* shown, const std::string& description);

/// The arguments that are not options.
CLI::Option* addFiles(CLI::App& app);

/// The help without the list of options that an option excludes.
class HelpText : public CLI::Formatter {
public:
    // NOLINTNEXTLINE(readability-identifier-naming): CLI11's name
    std::string make_option_opts(const CLI::Option* option) const override;
};

}  // namespace veltrace::cli

#include "option_kinds.h"

namespace veltrace::cli {

CLI::Option* addFlag(CLI::App& app, const std::string& name, const std::string& description,
                     const std::function<void()>& action) {
    return app.add_flag_callback(name, action, description);
}

CLI::Option* addFiles(CLI::App& app) {
    constexpr int kMany = CLI::detail::expected_max_vector_size;
    // With extra arguments the file name "[a,b]" would be read as two names.
    return app.add_option("FILE", "Files to read, and with -r directories")
        ->option_text("...")
        ->expected(kMany, kMany)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

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

std::string HelpText::make_option_opts(const CLI::Option* option) const {
    return option->get_option_text().empty() ? "" : " " + option->get_option_text();
}

}  // namespace veltrace::cli

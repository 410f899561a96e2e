#include "zephra/host/module.h"

#include <dlfcn.h>
#include <string>
#include <system_error>
#include <utility>

namespace zephra {

namespace {

std::string quoted(const std::filesystem::path& path) {
    return '\'' + path.string() + '\'';
}

// The loader's message about its last failure.
std::string loaderSentence() {
    const char* const sentence = dlerror();
    return sentence != nullptr ? sentence : "unknown failure";
}

// Rejects all but regular files: to open a pipe could block forever.
void requireRegularFile(const std::filesystem::path& path) {
    std::error_code failure;
    switch (std::filesystem::status(path, failure).type()) {
        case std::filesystem::file_type::regular:
            return;
        case std::filesystem::file_type::not_found:
            throw LoadError("There is no module file " + quoted(path) + ".");
        case std::filesystem::file_type::none:
            throw LoadError("The module file " + quoted(path) +
                            " cannot be reached: " + failure.message() + ".");
        case std::filesystem::file_type::directory:
            throw LoadError("The module file " + quoted(path) + " is a directory.");
        default:
            throw LoadError("The module file " + quoted(path) + " is not a regular file.");
    }
}

std::shared_ptr<void> open(const std::filesystem::path& path) {
    // Without a slash the loader would look the name up in its search path.
    const std::filesystem::path located =
        path.has_parent_path() ? path : std::filesystem::path(".") / path;
    void* const library = dlopen(located.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw LoadError("The module file " + quoted(path) +
                        " is not a loadable library: " + loaderSentence() + ".");
    }
    return {library, [](void* handle) { dlclose(handle); }};
}

}  // namespace

Module Module::load(const std::filesystem::path& path) {
    requireRegularFile(path);
    std::shared_ptr<void> library = open(path);
    void* const symbol = dlsym(library.get(), "qvxFunction");
    if (symbol == nullptr) {
        throw LoadError("The module file " + quoted(path) + " has no entry point qvxFunction.");
    }
    return Module(std::move(library), reinterpret_cast<decltype(&qvxFunction)>(symbol));
}

Module::Module(std::shared_ptr<void> library, decltype(&qvxFunction) function)
    : library_(std::move(library)), function_(function) {}

EntryPoint Module::entryPoint() const {
    return [library = library_, function = function_](int outputCount, qvArray* outputs[],
                                                      int inputCount, const qvArray* inputs[]) {
        function(outputCount, outputs, inputCount, inputs);
    };
}

}  // namespace zephra

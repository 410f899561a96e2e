// A loaded extension module.
#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "zephra/host/host.h"
#include "zephra/qvx.h"

namespace zephra {

/// Why a module could not be loaded: the file is missing, is not a loadable shared library, or
/// lacks the entry point. `what()` is one sentence that names the file.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A shared library that exports `qvxFunction`. Unloaded when the last copy is gone; no call of it
/// may be running then.
class Module {
public:
    /// Loads the library at `path` as it is given (no search path is consulted). Throws
    /// `LoadError`.
    [[nodiscard]] static Module load(const std::filesystem::path& path);

    /// The entry point; keeps the library loaded.
    [[nodiscard]] EntryPoint entryPoint() const;

private:
    explicit Module(std::shared_ptr<void> library, decltype(&qvxFunction) function);

    std::shared_ptr<void> library_;
    decltype(&qvxFunction) function_;
};

}  // namespace zephra

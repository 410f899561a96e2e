// Runs the module on one file and looks into what came back.
#pragma once

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zephra/host/host.h"

#include "support/bytes.h"
#include "support/memory_file.h"

namespace zephra {

/// For failure messages of tests.
void PrintTo(const Message& message, std::ostream* out);

}  // namespace zephra

namespace veltrace::test {

/// The module under test: linked into this program, or loaded from the shared library. Each test
/// program links one of the two definitions.
[[nodiscard]] zephra::EntryPoint moduleUnderTest();

/// Strict, and otherwise with the defaults of a host.
[[nodiscard]] zephra::Settings strictHost();

/// Runs `body` as a module's call in a strict host, for tests of operations inside the module.
[[nodiscard]] zephra::CallResult inCall(const std::function<void()>& body,
                                        const zephra::Settings& settings = strictHost());

/// One call of the module. Misuse of the host is a test failure. A path of field names leads from
/// the first element of the output through the first elements of nested directories.
class ModuleRun {
public:
    using Path = std::initializer_list<std::string_view>;

    /// On a memory file of these bytes.
    explicit ModuleRun(const Bytes& file, const zephra::Settings& settings = strictHost());
    /// On a memory file that the test keeps.
    explicit ModuleRun(const MemoryFile& file, const zephra::Settings& settings = strictHost());
    /// With any arguments.
    explicit ModuleRun(const std::vector<zephra::Argument>& arguments,
                       const zephra::Settings& settings = strictHost());

    /// The name that the module was given.
    [[nodiscard]] const std::string& fileName() const { return fileName_; }
    [[nodiscard]] const std::vector<zephra::Message>& warnings() const;
    [[nodiscard]] const std::optional<zephra::Message>& error() const;
    /// Warnings in order, then the error, if there was one.
    [[nodiscard]] std::vector<zephra::Message> messages() const;
    [[nodiscard]] const zephra::Leftovers& leftovers() const;
    [[nodiscard]] zephra::Value output() const;

    /// Number of directories in the main chain.
    [[nodiscard]] std::size_t directories() const { return output().size(); }
    /// Null for an empty field or one that does not exist.
    [[nodiscard]] zephra::Value value(Path path, std::size_t element = 0) const;
    [[nodiscard]] bool hasField(Path path) const;
    /// The one number of a field. A field without exactly one number is a test failure.
    [[nodiscard]] double number(Path path, std::size_t element = 0) const;
    /// Numbers in column order.
    [[nodiscard]] std::vector<double> numbers(Path path, std::size_t element = 0) const;
    /// Bytes of a char array, NULs included. A field of any other class is a test failure.
    [[nodiscard]] std::string text(Path path, std::size_t element = 0) const;
    [[nodiscard]] std::vector<std::size_t> dimensions(Path path, std::size_t element = 0) const;
    /// Field names in order; without a path those of the output.
    [[nodiscard]] std::vector<std::string> fieldNames(Path path = {}) const;

private:
    std::string fileName_;
    zephra::CallResult result_;
};

/// A warning or error with this identifier and text.
[[nodiscard]] zephra::Message message(std::string_view identifier, std::string_view text);

}  // namespace veltrace::test

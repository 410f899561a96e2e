// A file that shrinks, grows, vanishes or becomes another file while the module looks at it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <vector>

#include "cli/temporary_directory.h"
#include "environment/file_steps.h"
#include "support/module_run.h"
#include "support/open_descriptors.h"

namespace veltrace::test {

inline constexpr const char* kForeign = "ZEPHRA:host:foreignException";
inline constexpr std::size_t kBlocks = 512;

inline const zephra::Message kUnhandled =
    message("ZEPHRA:veltrace:unhandledFileFormat", "File format not recognized");
// The constructor of a reader fails outside of what the module guards.
inline const zephra::Message kUnguarded =
    message(kForeign, "The module threw an exception of type veltrace::module::VeltraceFatalError");

inline bool isLook(Step step) {
    return step == Step::open || step == Step::status;
}

class ChangingFile : public testing::Test {
protected:
    using Change = std::function<void()>;
    using When = std::function<bool(std::size_t number, Step step)>;

    static void TearDownTestSuite() {
        std::cout << "changing files: " << cases << " calls so far, of which " << errors
                  << " gave an error\n";
    }

    [[nodiscard]] const std::string& name() const { return name_; }

    void write(const Bytes& content) const {
        std::ofstream(name_, std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
    }
    void resize(std::size_t size) const { std::filesystem::resize_file(name_, size); }
    void vanish() const { std::filesystem::remove_all(name_); }

    /// Reads a file of this content, changed once, before the step that `when` chooses.
    ModuleRun run(const Bytes& content, const When& when, const Change& change) {
        vanish();
        write(content);
        const std::ptrdiff_t descriptors = openDescriptors();
        const FileSteps steps([&](std::size_t number, Step step) {
            if (when(number, step)) {
                change();
            }
        });
        zephra::Settings settings = strictHost();
        settings.blockBudget = kBlocks;
        ModuleRun result(std::vector<zephra::Argument>{name_}, settings);
        taken_ = steps.taken();
        EXPECT_EQ(openDescriptors(), descriptors);
        ++cases;
        errors += result.error() ? 1 : 0;
        return result;
    }

    /// The change comes before the look at the name, an open or a status, of this number.
    static When beforeLook(std::size_t look) {
        return [look, looks = std::size_t{0}](std::size_t, Step step) mutable {
            return isLook(step) && looks++ == look;
        };
    }

    static When beforeStep(std::size_t chosen) {
        return [chosen](std::size_t number, Step) { return number == chosen; };
    }

    /// The number of steps of the latest run.
    [[nodiscard]] std::size_t taken() const { return taken_; }

private:
    static inline std::size_t cases = 0;
    static inline std::size_t errors = 0;

    const cli::test::TemporaryDirectory directory_;
    const std::string name_ = directory_.at("image");
    std::size_t taken_ = 0;
};

}  // namespace veltrace::test

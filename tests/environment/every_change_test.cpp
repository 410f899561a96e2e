// Every change of a file before every step of its reading ends in what is stated.
#include <filesystem>
#include <initializer_list>

#include "environment/changing_file.h"
#include "support/file_test.h"
#include "sweep/seeds.h"
#include "sweep/stated_messages.h"
#include "sweep/well_formed.h"

namespace veltrace::test {

namespace {

/// What only a file that changes can bring about, besides what every file can.
bool isOfAChange(const zephra::Message& error, const std::string& name) {
    const std::string quoted = '"' + name + '"';
    const zephra::Message whole[] = {
        kUnguarded,
        message("ZEPHRA:veltrace:badFilename", "Could not open file " + quoted + "."),
        message("ZEPHRA:veltrace:bigTiff:badTiffHeaderVersionRead",
                "Could not read TIFF header version number, the image may be corrupt."),
        message("ZEPHRA:veltrace:JpegTagFile:fileSignatureReadFailure",
                "Unable to read the first two bytes of the file. " + quoted +
                    " is probably corrupt.\n"),
    };
    return std::ranges::find(whole, error) != std::end(whole) ||
           (error.identifier == "ZEPHRA:veltrace:JpegTagFile:fileSignatureVerificationFailure" &&
            error.text.starts_with("The first two bytes of a JPEG file should be [255 216], and "
                                   "the first two bytes of this file are ["));
}

/// Messages are known by the names of files in memory.
zephra::Message ofMemoryFile(zephra::Message message, const std::string& name) {
    for (std::size_t at = message.text.find(name); at != std::string::npos;
         at = message.text.find(name)) {
        message.text.replace(at, name.size(), "/proc/self/fd/3");
    }
    return message;
}

void expectStated(const ModuleRun& result, const std::string& name) {
    for (const zephra::Message& warning : result.warnings()) {
        EXPECT_TRUE(isStated(ofMemoryFile(warning, name), Channel::warning))
            << testing::PrintToString(warning);
    }
    if (const auto& error = result.error()) {
        EXPECT_TRUE(isOfAChange(*error, name) ||
                    isStated(ofMemoryFile(*error, name), Channel::error))
            << testing::PrintToString(*error);
        EXPECT_FALSE(result.output());
        const bool leavesName = error->identifier == kUnhandled.identifier ||
                                error->identifier == "ZEPHRA:veltrace:badFilename" ||
                                error->identifier == kForeign;
        EXPECT_EQ(result.leftovers().blocks, leavesName ? 1U : 0U);
        return;
    }
    EXPECT_EQ(result.leftovers().blocks, 0U);
    EXPECT_EQ(flawOf(result.output(), result.hasField({"ByteOrder"}) ? 34 : 10), "");
}

/// Whether the file has values behind its table, or more directories than one; what else is in an
/// entry makes no other steps.
bool hasStepsOfItsOwn(const Seed& seed) {
    return std::ranges::any_of(
        std::initializer_list<const char*>{"TypesOutside", "Camera", "SubImages", "Pages",
                                           "DamagedEntries"},
        [&seed](const char* end) { return seed.name.ends_with(end); });
}

class AnyChange : public ChangingFile {};

TEST_F(AnyChange, EndsAsStatedBeforeAnyStep) {
    Bytes other = seeds().back().big;
    const std::vector<Change> changes = {
        [this] { vanish(); },
        [this] { resize(0); },
        [this] { resize(9); },
        [this] { resize(std::filesystem::file_size(name()) / 2); },
        [this] { resize(std::filesystem::file_size(name()) + 100'000); },
        [this] { write(Bytes(5'000, 0xFF)); },  // the same file with another content
        [this, &other] { write(other); },
        [this, &other] {  // another file of the same name
            vanish();
            write(other);
        },
        [this] {
            vanish();
            std::filesystem::create_directory(name());
        },
    };
    for (const Seed& seed : seeds()) {
        if (!hasStepsOfItsOwn(seed)) {
            continue;
        }
        run(seed.little, beforeStep(std::string::npos), [] {});
        const std::size_t steps = taken();
        ASSERT_GT(steps, 8U);
        for (std::size_t step = 0; step < steps; ++step) {
            for (std::size_t change = 0; change < changes.size(); ++change) {
                SCOPED_TRACE(seed.name + ", step " + std::to_string(step) + ", change " +
                             std::to_string(change));
                expectStated(run(seed.little, beforeStep(step), changes[change]), name());
            }
        }
    }
}

}  // namespace

}  // namespace veltrace::test

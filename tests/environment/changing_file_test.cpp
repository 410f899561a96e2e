// Files that shrink, grow, vanish or become another file while the module looks at them.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <vector>

#include "cli/temporary_directory.h"
#include "environment/file_steps.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "sweep/block_budget.h"
#include "sweep/seeds.h"
#include "sweep/stated_messages.h"
#include "sweep/well_formed.h"

namespace veltrace::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kForeign = "ZEPHRA:host:foreignException";
constexpr std::size_t kBlocks = 512;

const zephra::Message kUnhandled =
    message("ZEPHRA:veltrace:unhandledFileFormat", "File format not recognized");
// The constructor of a reader fails outside of what the module guards.
const zephra::Message kUnguarded =
    message(kForeign, "The module threw an exception of type veltrace::VeltraceFatalError");

std::ptrdiff_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

bool isLook(Step step) {
    return step == Step::open || step == Step::status;
}

class ChangingFile : public testing::Test {
protected:
    using Change = std::function<void()>;
    using When = std::function<bool(std::size_t number, Step step)>;

    static void TearDownTestSuite() {
        std::cout << "changing files: " << cases << " calls, of which " << errors
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
        const BlockBudget budget(kBlocks);
        ModuleRun result(std::vector<zephra::Argument>{name_});
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

Bytes smallFile(Flavour flavour = Flavour::classic) {
    TiffBuilder file(Order::little, flavour);
    file.image().shorts(271, {7});
    return file.bytes();
}

struct Kind {
    const char* name;
    Bytes content;
    /// How many format tests open the file.
    std::size_t formatTests;
};

std::vector<Kind> kinds() {
    return {{"JPEG", jpegWithExif(smallFile()), 1},
            {"classic TIFF", smallFile(), 2},
            {"BigTIFF", smallFile(Flavour::big), 3}};
}

// The module opens the file to see whether it can be, once for each format test, asks for its
// status, and opens it to read.
TEST_F(ChangingFile, ThatVanishesEndsTheCallAtTheNextLook) {
    for (const Kind& kind : kinds()) {
        const std::size_t statusLook = 1 + kind.formatTests;
        for (std::size_t look = 0; look <= statusLook + 1; ++look) {
            SCOPED_TRACE(std::string(kind.name) + ", look " + std::to_string(look));
            const ModuleRun result = run(kind.content, beforeLook(look), [this] { vanish(); });
            zephra::Message expected = kUnguarded;
            if (look == 0) {
                expected = message("ZEPHRA:veltrace:badFilename",
                                   "Could not open file \"" + name() + "\".");
            } else if (look < statusLook) {
                expected = kUnhandled;
            }
            EXPECT_THAT(result.messages(), ElementsAre(expected));
            EXPECT_EQ(result.leftovers().blocks, 1U) << "the name";
        }
        const ModuleRun after = run(kind.content, beforeLook(statusLook + 2), [this] { vanish(); });
        EXPECT_THAT(after.messages(), IsEmpty());
    }
}

TEST_F(ChangingFile, ThatVanishesOnceItIsOpenIsReadInFull) {
    const When firstTell = [](std::size_t, Step step) { return step == Step::tell; };
    const ModuleRun result = run(smallFile(), firstTell, [this] { vanish(); });
    EXPECT_THAT(result.messages(), IsEmpty());
    EXPECT_EQ(result.number({"Make"}), 7);
    EXPECT_EQ(result.number({"FileSize"}), 26);
}

// Looks 3 and 4 of a classic TIFF file are its status and the open to read, 2 and 3 of a JPEG file.

TEST_F(ChangingFile, ThatGrowsAfterItsStatusHasTheSizeFromBefore) {
    const ModuleRun result = run(smallFile(), beforeLook(4), [this] { resize(100'000); });
    EXPECT_THAT(result.messages(), IsEmpty());
    EXPECT_EQ(result.number({"FileSize"}), 26);
}

TEST_F(ChangingFile, ThatGrowsBeforeItsStatusHasTheNewSize) {
    const ModuleRun result = run(smallFile(), beforeLook(3), [this] { resize(100'000); });
    EXPECT_THAT(result.messages(), IsEmpty());
    EXPECT_EQ(result.number({"FileSize"}), 100'000);
}

TEST_F(ChangingFile, ThatShrinksAfterItsStatusHasNoFirstDirectory) {
    const ModuleRun result = run(smallFile(), beforeLook(4), [this] { resize(8); });
    EXPECT_THAT(result.messages(),
                ElementsAre(message("ZEPHRA:veltrace:numIfdEntriesReadError",
                                    "Unable to read the number of entries in one of the image file "
                                    "directories, the metadata in \"" +
                                        name() + "\" may be corrupt.")));
}

TEST_F(ChangingFile, ThatShrinksBeforeItsStatusPointsPastItsEnd) {
    const ModuleRun result = run(smallFile(), beforeLook(3), [this] { resize(7); });
    EXPECT_THAT(result.messages(),
                ElementsAre(message("ZEPHRA:veltrace:badTiffHeaderOffsetRead",
                                    "Could not read the location of the first TIFF tag table, "
                                    "the image may be corrupt.")));
}

// The value of Make stands behind the table, at byte 8 + 2 + 2 * 12 + 4.
TEST_F(ChangingFile, ThatIsCutBetweenTableAndValueLosesTheValue) {
    TiffBuilder file;
    file.image().ascii(271, "a long name").shorts(274, {6});
    std::size_t moves = 0;
    const When secondMove = [&moves](std::size_t, Step step) {
        return step == Step::move && ++moves == 2;
    };
    const ModuleRun result = run(file.bytes(), secondMove, [this] { resize(40); });
    EXPECT_THAT(
        result.messages(),
        ElementsAre(message("ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                            "Unable to read TIFF tag \"Make\" value from byte location 38.")));
    EXPECT_FALSE(result.hasField({"Make"}));
    EXPECT_EQ(result.number({"Orientation"}), 6);
}

TEST_F(ChangingFile, ThatBecomesAJpegFileIsNoTiffFile) {
    const ModuleRun result = run(smallFile(), beforeLook(4), [this] {
        vanish();
        write(jpegWithExif(smallFile()));
    });
    EXPECT_THAT(
        result.messages(),
        ElementsAre(message("ZEPHRA:veltrace:badEndianness",
                            "The endian signature [255 216] of \"" + name() +
                                "\"  is neither [77 77] (big-endian) nor [73 73] (little-endian),"
                                "the image file may be corrupt.")));
}

TEST_F(ChangingFile, ThatBecomesATiffFileIsNoJpegFile) {
    const ModuleRun result = run(jpegWithExif(smallFile()), beforeLook(3), [this] {
        vanish();
        write(smallFile());
    });
    EXPECT_THAT(result.messages(),
                ElementsAre(message("ZEPHRA:veltrace:JpegTagFile:fileSignatureVerificationFailure",
                                    "The first two bytes of a JPEG file should be [255 216], and "
                                    "the first two bytes of this file are [I, I].\n")));
}

TEST_F(ChangingFile, ThatBecomesADirectoryCannotBeRead) {
    const auto becomeDirectory = [this] {
        vanish();
        std::filesystem::create_directory(name());
    };
    EXPECT_THAT(run(smallFile(), beforeLook(2), becomeDirectory).messages(),
                ElementsAre(kUnhandled));
    EXPECT_THAT(run(smallFile(), beforeLook(4), becomeDirectory).messages(),
                ElementsAre(message("ZEPHRA:veltrace:tiffHeaderEndianReadFailure",
                                    "Could not read TIFF header byte order the image file \"" +
                                        name() + "\" may be corrupt.")));
}

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

TEST_F(ChangingFile, MayChangeInAnyWayBeforeAnyStep) {
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

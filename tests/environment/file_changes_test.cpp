// What comes of a file that changes between two looks at it, or two reads.
#include <filesystem>

#include "environment/changing_file.h"
#include "support/file_test.h"

namespace veltrace::test {

namespace {

Bytes smallFile(Flavour flavour = Flavour::classic) {
    return tiffOf({Order::little, flavour}, Dir().shorts(271, {7}));
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
                expected = unopenableFile(name());
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
    EXPECT_THAT(result.messages(), ElementsAre(unreadableCount(name())));
}

TEST_F(ChangingFile, ThatShrinksBeforeItsStatusPointsPastItsEnd) {
    const ModuleRun result = run(smallFile(), beforeLook(3), [this] { resize(7); });
    EXPECT_THAT(result.messages(), ElementsAre(unreadableFirstOffset()));
}

// The description stands behind the table, at byte 8 + 2 + 3 * 12 + 4, and is longer than what is
// read ahead; the value of Make is read fifth, after two format tests and two reads of the above.
TEST_F(ChangingFile, ThatIsCutBetweenTableAndValueLosesTheValue) {
    std::size_t reads = 0;
    const When fifthRead = [&reads](std::size_t, Step step) {
        return step == Step::read && ++reads == 5;
    };
    const ModuleRun result = run(
        tiffOf(
            Dir().ascii(270, std::string(40'001, 'd')).ascii(271, "a long name").shorts(274, {6})),
        fifthRead, [this] { resize(40'060); });
    EXPECT_THAT(result.messages(), ElementsAre(unreadableValue("Make", 40052)));
    EXPECT_FALSE(result.hasField({"Make"}));
    EXPECT_EQ(result.number({"Orientation"}), 6);
}

TEST_F(ChangingFile, ThatBecomesAJpegFileIsNoTiffFile) {
    const ModuleRun result = run(smallFile(), beforeLook(4), [this] {
        vanish();
        write(jpegWithExif(smallFile()));
    });
    EXPECT_THAT(result.messages(), ElementsAre(badByteOrder(255, 216, name())));
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
                ElementsAre(unreadableByteOrder(name())));
}

}  // namespace

}  // namespace veltrace::test

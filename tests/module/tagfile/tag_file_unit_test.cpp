// The state of a reader before it reads.
#include <bit>
#include <gmock/gmock.h>
#include <memory>
#include <unistd.h>

#include "support/memory_file.h"
#include "support/thrown.h"
#include "support/unopenable_file.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

using namespace module;

namespace {

template <class Reader>
std::unique_ptr<TagFile> make(const char* fileName) {
    return std::make_unique<Reader>(fileName);
}

struct ReaderCase {
    const char* name;
    std::unique_ptr<TagFile> (*make)(const char* fileName);
    FormatType formatType;
    std::int32_t entrySize;
    std::int32_t countSize;
    std::int32_t offsetSize;
    std::int32_t valueFieldStart;
};

class EveryReader : public testing::TestWithParam<ReaderCase> {};

INSTANTIATE_TEST_SUITE_P(
    Readers, EveryReader,
    testing::Values(ReaderCase{"Jpeg", make<JpegTagFile>, FormatType::jpeg, 12, 2, 4, 8},
                    ReaderCase{"ClassicTiff", make<ClassicTiffTagFile>, FormatType::classicTiff, 12,
                               2, 4, 8},
                    ReaderCase{"BigTiff", make<BigTiffTagFile>, FormatType::bigTiff, 20, 8, 8, 12}),
    [](const auto& test) { return test.param.name; });

TEST_P(EveryReader, ReportsItsFormatAndLayout) {
    const MemoryFile file(bytesOf("kiln"));
    const auto reader = GetParam().make(file.name().c_str());
    EXPECT_EQ(reader->formatType(), GetParam().formatType);
    EXPECT_EQ(reader->entrySize(), GetParam().entrySize);
    EXPECT_EQ(reader->countSize(), GetParam().countSize);
    EXPECT_EQ(reader->offsetSize(), GetParam().offsetSize);
    EXPECT_EQ(reader->valueFieldStart(), GetParam().valueFieldStart);
}

TEST_P(EveryReader, StartsAtTheBeginningOfTheFileWithoutDirectories) {
    const MemoryFile file(bytesOf("kiln"));
    const auto reader = GetParam().make(file.name().c_str());
    EXPECT_EQ(reader->fileName(), file.name());
    EXPECT_EQ(reader->position(), 0);
    EXPECT_EQ(std::fgetc(reader->stream()), 'k');
    EXPECT_EQ(reader->ifdSet(), nullptr);
    EXPECT_EQ(reader->getNumIfds(), 0U);
}

TEST_P(EveryReader, StoresTheStatusOfTheFileWhenItOpensIt) {
    const MemoryFile file(bytesOf("kiln"));
    file.setModificationTime(1'000'000'000);
    const auto reader = GetParam().make(file.name().c_str());
    file.put(4, bytesOf(" log"));
    file.setModificationTime(2'000'000'000);
    EXPECT_EQ(reader->fileSize(), 4);
    EXPECT_EQ(reader->modificationTime(), 1'000'000'000);
}

TEST_P(EveryReader, ReportsTheByteOrderOfTheComputer) {
    const MemoryFile file(bytesOf("kiln"));
    EXPECT_EQ(GetParam().make(file.name().c_str())->computerIsBigEndian(),
              std::endian::native == std::endian::big);
}

TEST_P(EveryReader, ReportsASizeOfMoreThan32Bits) {
    const MemoryFile file({});
    file.put(5'000'000'000, {0});
    EXPECT_EQ(GetParam().make(file.name().c_str())->fileSize(), 5'000'000'001);
}

TEST_P(EveryReader, RejectsAMissingFile) {
    EXPECT_EQ(fatalErrorOf([] { GetParam().make("/nonexistent/kiln.tif"); }),
              message("ZEPHRA:veltrace:statFailure",
                      "The image file \"/nonexistent/kiln.tif\" may not exist.\n"));
}

TEST_P(EveryReader, RejectsAFileThatCannotBeOpened) {
    const UnopenableFile file;
    EXPECT_EQ(fatalErrorOf([&] { GetParam().make(file.name().c_str()); }),
              message("ZEPHRA:veltrace:TagFile:fileOpenFailure",
                      "Could not open \"" + file.name() + "\"\n"));
}

TEST_P(EveryReader, ThrowsFromItsDestructorIfTheFileCannotBeClosed) {
    const MemoryFile file(bytesOf("kiln"));
    TagFile* const reader = GetParam().make(file.name().c_str()).release();
    close(fileno(reader->stream()));
    EXPECT_EQ(fatalErrorOf([&] { delete reader; }),
              message("ZEPHRA:veltrace:TagFile:fileCloseFailure",
                      "Could not properly close \"" + file.name() + "\"\n"));
}

/// A reader constructed without a file name.
class NamelessReader : public TagFile {
public:
    void readAll() override {}
    std::size_t readNumEntries(std::uint64_t*) override { return 0; }
    std::size_t readOffset(std::uint64_t*) override { return 0; }
};

TEST(DefaultReader, CannotBeConstructed) {
    EXPECT_EQ(fatalErrorOf([] { const NamelessReader reader; }),
              message("ZEPHRA:veltrace:TagFile:defaultConstructorNotAllowed",
                      "The default TagFile constructor should not be used.\n"));
}

TEST_P(EveryReader, ListsTheDefaultFieldNamesOfItsFormat) {
    const MemoryFile file(bytesOf("kiln"));
    const auto reader = GetParam().make(file.name().c_str());
    const std::vector<std::string> names(reader->defaultFieldNames().begin(),
                                         reader->defaultFieldNames().end());
    std::vector<std::string> expected(std::begin(kGeneralFields), std::end(kGeneralFields));
    if (reader->formatType() != FormatType::jpeg) {
        expected.insert(expected.end(), std::begin(kBaselineFields), std::end(kBaselineFields));
    }
    EXPECT_EQ(names, expected);
}

}  // namespace

}  // namespace veltrace::test

// A copy of a reader has its file, but not what was read from it.
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <unistd.h>

#include "support/quiet_call.h"
#include "support/thrown.h"
#include "support/tiff_builder.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A header in big-endian order at position 4; the first directory would be at position 12.
Bytes shiftedHeader() {
    return bytesOf("kiln") + Bytes{'M', 'M', 0, 42, 0, 0, 0, 8} + bytesOf("rest");
}

/// A reader that has read the header of `file`, which begins at position 4.
ClassicTiffTagFile* newReaderOf(const MemoryFile& file) {
    auto* const reader = new ClassicTiffTagFile(file.name().c_str());
    EXPECT_TRUE(reader->seek(4));
    reader->readHeader();
    return reader;
}

void expectDescriptionOf(const MemoryFile& file, const TagFile& reader) {
    EXPECT_EQ(reader.fileName(), file.name());
    EXPECT_EQ(reader.offsetBase(), 4);
    EXPECT_EQ(reader.headerByteOrder(), HeaderByteOrder::big);
    EXPECT_FALSE(reader.computerIsBigEndian());
    EXPECT_EQ(reader.fileSize(), 16);
    EXPECT_EQ(reader.modificationTime(), 1'000'000'000);
}

class CopiedReader : public testing::Test {
protected:
    CopiedReader() : file_(shiftedHeader()) {
        file_.setModificationTime(1'000'000'000);
        original_.reset(newReaderOf(file_));
    }

    const MemoryFile file_;
    std::unique_ptr<ClassicTiffTagFile> original_;
};

TEST_F(CopiedReader, DescribesTheSameFile) {
    const ClassicTiffTagFile copy(*original_);
    expectDescriptionOf(file_, copy);
}

TEST_F(CopiedReader, HasItsOwnStream) {
    ClassicTiffTagFile copy(*original_);
    EXPECT_EQ(original_->position(), 12);
    EXPECT_EQ(copy.position(), 0);
    EXPECT_EQ(std::fgetc(copy.stream()), 'k');
    EXPECT_EQ(original_->position(), 12);
}

TEST_F(CopiedReader, ReadsInTheByteOrderOfTheComputer) {
    ClassicTiffTagFile copy(*original_);
    ASSERT_TRUE(copy.seek(4));
    copy.readHeader();
    EXPECT_TRUE(copy.swapFlag());
    EXPECT_EQ(copy.version(), 42);
}

TEST_F(CopiedReader, HasNoFieldNames) {
    const ClassicTiffTagFile copy(*original_);
    EXPECT_THAT(copy.defaultFieldNames(), IsEmpty());
    EXPECT_THAT(original_->defaultFieldNames(), SizeIs(34));
}

TEST_F(CopiedReader, HasNoDirectories) {
    const MemoryFile memory(tiffOf(Dir().shorts(274, {6})));
    inQuietCall([&] {
        ClassicTiffTagFile read(memory.name().c_str());
        read.readAll();
        const ClassicTiffTagFile copy(read);
        EXPECT_EQ(read.getNumIfds(), 1U);
        EXPECT_EQ(copy.ifdSet(), nullptr);
    });
}

TEST_F(CopiedReader, InitializesAllOtherMembers) {
    const MemoryFile big(Bytes{'M', 'M', 0x2B, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16});
    BigTiffTagFile read(big.name().c_str());
    read.readHeader();
    ASSERT_TRUE(read.swapFlag());
    const BigTiffTagFile copy(read);
    EXPECT_FALSE(copy.swapFlag());
    EXPECT_EQ(copy.formatType(), FormatType::jpeg);
    EXPECT_EQ(copy.entrySize(), 12);
    EXPECT_EQ(copy.countSize(), 2);
    EXPECT_EQ(copy.offsetSize(), 4);
    EXPECT_THAT(copy.byteOrderMark(), ElementsAre(0, 0));
    EXPECT_EQ(copy.version(), 0);
}

TEST(ReaderCopy, FailsWhenTheFileIsGone) {
    std::optional<MemoryFile> file(std::in_place, bytesOf("kiln"));
    const std::string name = file->name();
    const ClassicTiffTagFile original(name.c_str());
    file.reset();
    EXPECT_EQ(fatalErrorOf([&] { const ClassicTiffTagFile copy(original); }),
              message("ZEPHRA:veltrace:TagFileCopyConstructer:fileOpenFailure",
                      "Could not open \"" + name + "\"\n"));
}

class AssignedReader : public CopiedReader {
protected:
    AssignedReader()
        : otherFile_(bytesOf("other")),
          assigned_(new ClassicTiffTagFile(otherFile_.name().c_str())) {}

    const MemoryFile otherFile_;
    const std::unique_ptr<ClassicTiffTagFile> assigned_;
};

TEST_F(AssignedReader, DescribesTheOtherFile) {
    EXPECT_EQ(&(*assigned_ = *original_), assigned_.get());
    expectDescriptionOf(file_, *assigned_);
}

TEST_F(AssignedReader, KeepsItsOtherMembers) {
    const MemoryFile memory(tiffOf(Dir().shorts(274, {6})));
    inQuietCall([&] {
        ClassicTiffTagFile assigned(memory.name().c_str());
        assigned.readAll();
        assigned = *original_;
        EXPECT_EQ(assigned.formatType(), FormatType::classicTiff);
        EXPECT_FALSE(assigned.swapFlag());
        EXPECT_THAT(assigned.byteOrderMark(), ElementsAre('I', 'I'));
        EXPECT_EQ(assigned.version(), 42);
        EXPECT_EQ(assigned.getNumIfds(), 1U);
        EXPECT_THAT(assigned.defaultFieldNames(), SizeIs(34));
    });
}

TEST_F(AssignedReader, ReadsTheOtherFileThroughItsOwnStream) {
    *assigned_ = *original_;
    EXPECT_EQ(assigned_->position(), 0);
    EXPECT_EQ(std::fgetc(assigned_->stream()), 'k');
    EXPECT_EQ(original_->position(), 12);
}

TEST_F(AssignedReader, ReopensTheFileWhenAssignedToItself) {
    const ClassicTiffTagFile& itself = *original_;
    *original_ = itself;
    expectDescriptionOf(file_, *original_);
    EXPECT_EQ(original_->position(), 0);
    EXPECT_EQ(std::fgetc(original_->stream()), 'k');
}

TEST_F(AssignedReader, ReportsItsOldNameIfItsFileCannotBeClosed) {
    close(fileno(assigned_->stream()));
    EXPECT_EQ(fatalErrorOf([&] { *assigned_ = *original_; }),
              message("ZEPHRA:veltrace:TagFile:operator_equals",
                      "Could not properly close \"" + otherFile_.name() + "\"\n"));
}

TEST(ReaderAssignment, ReportsTheNewNameIfTheOtherFileIsGone) {
    const MemoryFile file(bytesOf("kiln"));
    std::optional<MemoryFile> gone(std::in_place, bytesOf("ash"));
    const std::string name = gone->name();
    const ClassicTiffTagFile other(name.c_str());
    ClassicTiffTagFile assigned(file.name().c_str());
    gone.reset();
    EXPECT_EQ(fatalErrorOf([&] { assigned = other; }),
              message("ZEPHRA:veltrace:TagFileAssignmentOperator:fileOpenFailure",
                      "Could not open \"" + name + "\"\n"));
}

}  // namespace

}  // namespace veltrace::test

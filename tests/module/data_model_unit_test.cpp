// The members of the classes, in the order of their declaration.
#include <algorithm>
#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <type_traits>
#include <vector>

#include "ifd/ifd.h"
#include "ifd/ifd_set.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "support/tiff_tag_peer.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::module {

struct IfdPeer {
    template <class Visitor>
    static void visitMembers(const IFD& ifd, const Visitor& visit) {
        visit(ifd.knownTags_, ifd.unknownTags_, ifd.entryCount_, ifd.reader_, ifd.position_,
              ifd.ifdId_, ifd.tableSize_, ifd.width_, ifd.height_, ifd.spare_, ifd.present_,
              ifd.photometricCode_, ifd.bitsPerSample_, ifd.sampleCount_);
    }
};

struct IfdSetPeer {
    template <class Visitor>
    static void visitMembers(const IFDSet& chain, const Visitor& visit) {
        visit(chain.reader_, chain.ifdId_, chain.directories_, chain.fieldNames_,
              chain.hasUnknownTags_);
    }
};

struct TagFilePeer {
    template <class Visitor>
    static void visitMembers(const TagFile& file, const Visitor& visit) {
        visit(file.formatType_, file.file_, file.fileName_, file.swapFlag_, file.offsetBase_,
              file.headerByteOrder_, file.computerIsBigEndian_, file.computerIsLittleEndian_,
              file.status_, file.ifdSet_, file.entrySize_, file.countSize_, file.offsetSize_,
              file.byteOrderMark_, file.version_, file.defaultFieldNames_);
    }
};

}  // namespace veltrace::module

namespace veltrace::test {

using namespace module;

namespace {

/// The members have these types, in this order.
template <class... Types>
struct Members {
    template <class... Found>
    void operator()(const Found&... members) const {
        static_assert(std::is_same_v<std::tuple<Types...>, std::tuple<Found...>>);
        const std::array<const void*, sizeof...(Found)> places{&members...};
        EXPECT_TRUE(std::ranges::is_sorted(places, std::less<const void*>{}));
    }
};

using Numbers = std::vector<double>;

TEST(DataModel, StoresATagAsDoublesAndByteStrings) {
    const Members<Numbers, Numbers, std::string, std::string, std::uint16_t, std::uint16_t,
                  std::uint64_t, std::uint64_t, std::uint64_t, IfdId, std::string, SubDirectory>
        members;
    TiffTagPeer::visitMembers(TiffTag(259, IfdId::image), members);
}

TEST(DataModel, StoresADirectoryAsItsTagsByValueAndWhatTheOutputNeeds) {
    const Members<std::vector<TiffTag>, std::vector<TiffTag>, std::uint32_t, TagFile*, std::int64_t,
                  IfdId, std::uint32_t, double, double, double, std::array<bool, 22>, std::int32_t,
                  Numbers, std::uint32_t>
        members;
    IfdPeer::visitMembers(IFD(), members);
}

TEST(DataModel, StoresAChainAsItsDirectoriesByValueAndAnOrderedMapOfNames) {
    const Members<TagFile*, IfdId, std::vector<IFD>, std::map<std::uint16_t, std::string>, bool>
        members;
    IfdSetPeer::visitMembers(IFDSet(), members);
}

TEST(DataModel, StoresAReaderAsItsFileAndItsLayout) {
    OpenedTiff<> opened(tiffOf(Dir().shorts(258, {8})));
    const Members<FormatType, InputFile, std::string, bool, std::int64_t, HeaderByteOrder, bool,
                  bool, struct stat64, std::unique_ptr<IFDSet>, std::int32_t, std::int32_t,
                  std::int32_t, std::array<unsigned char, 2>, std::uint16_t,
                  std::vector<std::string>>
        members;
    TagFilePeer::visitMembers(*opened, members);
}

// Two of the entries are baseline tags, so 20 fallback tags follow; one of the four is the width.
TEST(DataModel, OfADirectoryHasRoomForItsEntriesAndFallbackTagsOnly) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(254, {0}).shorts(256, {5}).shorts(258, {8}).shorts(262, {1});
        const IFD directory = OpenedTiff<>(file).readDirectory();
        EXPECT_EQ(directory.knownTags().size(), 3U + 20U);
        EXPECT_EQ(directory.knownTags().capacity(), 4U + 20U);
    });
}

template <class Type>
concept HasConstantOutput = requires(const Type& object) {
    object.outputValue();
};

TEST(DataModel, IsChangedOnlyByOutputThatIsNotConst) {
    EXPECT_FALSE(HasConstantOutput<TiffTag>);
    EXPECT_FALSE(HasConstantOutput<IFDSet>);
    EXPECT_FALSE(HasConstantOutput<TagFile>);
    EXPECT_TRUE(
        (std::is_same_v<decltype(std::declval<const SubDirectory&>().get()), const IFDSet*>));
}

}  // namespace

}  // namespace veltrace::test

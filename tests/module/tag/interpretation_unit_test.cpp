// Interpretation in states that no file can cause.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "zephra/host/value.h"

#include "support/one_tag.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "support/tiff_builder.h"
#include "support/tiff_tag_peer.h"
#include "tag/integer_code.h"

namespace veltrace::test {

using namespace module;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Interpretation, RejectsAnImpossibleKindOfDirectory) {
    TiffTag tag(263, IfdId::image);
    TiffTagPeer::setIfdId(tag, IfdId{4});
    EXPECT_EQ(fatalErrorOf([&] { TiffTagPeer::processSpecificTags(tag); }),
              message("ZEPHRA:veltrace:processSpecificTags:unrecognizedIfdId",
                      "Did not recognize IFD ID 4\n"));
}

TEST(Interpretation, SkipsTagsOfGpsAndInteroperabilityDirectories) {
    for (const IfdId ifdId : {IfdId::gps, IfdId::interoperability}) {
        const TiffTag tag(259, ifdId);
        EXPECT_THAT(tag.outputText(), IsEmpty());
        EXPECT_THAT(tag.outputValues(), ElementsAre(1));
    }
}

TEST(Interpretation, KeepsTheNumbersOfAWord) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().shorts(290, {0, 8})));
        EXPECT_EQ(one.tag().outputText(), "Unknown");
        EXPECT_THAT(one.tag().outputValues(), ElementsAre(0, 8));
    });
}

TEST(Interpretation, KeepsTheRawValuesOfReplacedNumbers) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().shorts(290, {3, 4})));
        EXPECT_THAT(one.tag().rawValues(), ElementsAre(3, 4));
        EXPECT_THAT(one.tag().outputValues(), ElementsAre(0.001, 4));
        EXPECT_THAT(one.tag().outputText(), IsEmpty());
    });
}

// A value is either a text or numbers, and only numbers get words.
TEST(Interpretation, ReportsWordsAndTextsInPlaceOfNumbers) {
    inQuietCall([] {
        TiffTag tag(259, IfdId::image);
        EXPECT_EQ(zephra::Value(tag.outputValue()).text(), "Uncompressed");
        const OneTag one(tiffOf(Dir().rawAscii(259, "text")));
        TiffTag text = one.tag();
        EXPECT_EQ(zephra::Value(text.outputValue()).text(), "text");
    });
}

TEST(Nesting, ReportsAnImpossibleKindOfDirectoryInTwoSentences) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}))));
        TiffTag tag = one.tag();
        TiffTagPeer::setIfdId(tag, IfdId{4});
        EXPECT_EQ(recoverableErrorOf([&] { TiffTagPeer::checkNesting(tag); }),
                  message("ZEPHRA:veltrace:TiffTag:unrecognizedIfdID",
                          "Did not recognize IFD ID 4\nTag id # 34665 is illegal within the  "
                          "subIFD.  There may have been some loss of metadata.\n"));
    });
}

// The stored values stay scaled, so a second output scales them again.
TEST(Colormap, IsScaledInPlace) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().shorts(320, {65535, 0, 13107})));
        TiffTag tag = one.tag();
        EXPECT_NE(tag.outputValue(), nullptr);
        EXPECT_THAT(tag.outputValues(), ElementsAre(1, 0, 0.2));
        EXPECT_NE(tag.outputValue(), nullptr);
        EXPECT_THAT(tag.outputValues(), ElementsAre(1 / 65535.0, 0, 0.2 / 65535.0));
        EXPECT_THAT(tag.rawValues(), ElementsAre(65535, 0, 13107));
    });
}

TEST(IntegerCode, TruncatesTowardZero) {
    EXPECT_EQ(integerCode(2.9), 2);
    EXPECT_EQ(integerCode(-2.9), -2);
    EXPECT_EQ(integerCode(-0.9), 0);
    EXPECT_EQ(integerCode(5e-324), 0);
}

TEST(IntegerCode, ChecksTheRangeAfterTruncation) {
    EXPECT_EQ(integerCode(2147483647.5), 2147483647);
    EXPECT_EQ(integerCode(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(integerCode(-2147483647.5), -2147483647);
}

TEST(IntegerCode, IsTheMinimumForNumbersOutOfRange) {
    for (const double value :
         {2147483648.0, 4294967296.0, -2147483649.0, 1e300, -1e300,
          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(integerCode(value), std::numeric_limits<std::int32_t>::min()) << value;
    }
}

}  // namespace

}  // namespace veltrace::test

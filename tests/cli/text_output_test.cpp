#include "text_output.h"

#include <gtest/gtest.h>
#include <sstream>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

class TextOutputTest : public testing::Test {
protected:
    void file(std::string_view path, const std::function<qvArray*()>& make) {
        output_.file(path, called(make));
    }
    std::string text() const { return out_.str(); }

    std::ostringstream out_;
    TextOutput output_{out_};
};

TEST_F(TextOutputTest, AlignsTheValuesOfADirectory) {
    file("a.tif", [] {
        return structures({{{"Width", qvCreateDoubleScalar(7)},
                            {"Compression", characters("LZW")},
                            {"BitDepth", qvCreateDoubleScalar(24)}}});
    });
    EXPECT_EQ(text(),
              "a.tif\n"
              "  Directory\n"
              "    Width        7\n"
              "    Compression  LZW\n"
              "    BitDepth     24\n");
}

TEST_F(TextOutputTest, LeavesEmptyFieldsOutAndDoesNotAlignToThem) {
    file("a.tif", [] {
        return structures({{{"AVeryLongName", nullptr},
                            {"Blank", characters("\0"s)},
                            {"Width", qvCreateDoubleScalar(7)}}});
    });
    EXPECT_EQ(text(),
              "a.tif\n"
              "  Directory\n"
              "    Width  7\n");
}

TEST_F(TextOutputTest, NumbersSeveralDirectoriesAndSeparatesFiles) {
    file("a.tif", [] {
        return structures({{{"Width", qvCreateDoubleScalar(1)}},  //
                           {{"Width", qvCreateDoubleScalar(2)}}});
    });
    file("b.tif", [] { return structures({{{"Width", qvCreateDoubleScalar(3)}}}); });
    EXPECT_EQ(text(),
              "a.tif\n"
              "  Directory 1 of 2\n"
              "    Width  1\n"
              "  Directory 2 of 2\n"
              "    Width  2\n"
              "\n"
              "b.tif\n"
              "  Directory\n"
              "    Width  3\n");
}

TEST_F(TextOutputTest, NestedDirectoriesFollowTheLinesOfTheirParent) {
    file("a.tif", [] {
        return structures(
            {{{"DigitalCamera", structures({{{"FNumber", qvCreateDoubleScalar(2.8)}}})},
              {"UnknownTags", structures({{{"ID", qvCreateDoubleScalar(65000)}},
                                          {{"ID", qvCreateDoubleScalar(65001)}}})},
              {"Width", qvCreateDoubleScalar(7)}}});
    });
    EXPECT_EQ(text(),
              "a.tif\n"
              "  Directory\n"
              "    Width  7\n"
              "    DigitalCamera\n"
              "      FNumber  2.8\n"
              "    UnknownTags 1 of 2\n"
              "      ID  65000\n"
              "    UnknownTags 2 of 2\n"
              "      ID  65001\n");
}

TEST_F(TextOutputTest, SaysWhenAFileHasNoDirectories) {
    file("a.tif", [] { return numbers(0, 0, {}); });
    EXPECT_EQ(text(), "a.tif\n  no directories\n");
}

TEST_F(TextOutputTest, PrintsNothingOfAFileThatFailed) {
    file("a.tif", []() -> qvArray* {
        qvxErrMsgIdAndTxt("X:end", "broken");
        return nullptr;
    });
    EXPECT_EQ(text(), "");
}

TEST_F(TextOutputTest, EscapesFileNamesAndValues) {
    file("new\nline\x1b\xff", [] { return structures({{{"Make", characters("\x1b[2J\x9b")}}}); });
    EXPECT_EQ(text(),
              "new\\nline\\x1b\\xff\n"
              "  Directory\n"
              "    Make  \\x1b[2J\\x9b\n");
}

TEST_F(TextOutputTest, DeepDirectoriesStopIndentingAndTellTheirDepth) {
    file("a.tif", [] { return nestedStructures(18); });
    EXPECT_TRUE(text().ends_with("\n"s + std::string(32, ' ') + "Next\n" +     //
                                 std::string(32, ' ') + "Next (depth 17)\n" +  //
                                 std::string(32, ' ') + "Next (depth 18)\n"))
        << text();
}

TEST_F(TextOutputTest, NestingIsLimitedByMemoryOnly) {
    file("a.tif", [] { return nestedStructures(200'000); });
    EXPECT_TRUE(text().ends_with("Next (depth 200000)\n"));
}

}  // namespace
}  // namespace veltrace::cli

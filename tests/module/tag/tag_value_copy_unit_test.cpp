// Copies and moves of values.
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "tag/data_type.h"
#include "tag/tag_value.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::IsEmpty;

constexpr std::string_view kInside = "kiln";
constexpr std::string_view kOutside = "a kiln and more";

// A move takes no memory, and so fits where nothing may fail.
static_assert(std::is_nothrow_move_constructible_v<TagValue>);
static_assert(std::is_nothrow_swappable_v<TagValue>);

TagValue textOf(std::string_view text) {
    TagValue value(static_cast<std::uint16_t>(DataType::ascii),
                   static_cast<std::uint32_t>(text.size()));
    value.set(reinterpret_cast<const std::byte*>(text.data()));
    return value;
}

class ValueOfText : public testing::TestWithParam<std::string_view> {};

// Around the size from which on a value is mapped.
std::string_view large(std::size_t size) {
    static const std::string text = [] {
        std::string bytes((std::size_t{6} << 20) + 1, ' ');
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<char>('a' + i * 7 % 26);
        }
        return bytes;
    }();
    return std::string_view(text).substr(0, size);
}

INSTANTIATE_TEST_SUITE_P(
    Places, ValueOfText,
    testing::Values(kInside, "8 bytes!", kOutside, large((std::size_t{2} << 20) - 1),
                    large(std::size_t{2} << 20), large((std::size_t{2} << 20) + 1),
                    large((std::size_t{6} << 20) + 1)),
    [](const auto& text) { return "Of" + std::to_string(text.param.size()) + "Bytes"; });

TEST_P(ValueOfText, IsACopyOfItsBytes) {
    std::string bytes(GetParam());
    const TagValue value = textOf(bytes);
    bytes.assign(bytes.size(), '?');
    EXPECT_EQ(value.text(), GetParam());
}

TEST_P(ValueOfText, OutlivesWhatItIsACopyOf) {
    TagValue copy;
    {
        const TagValue value = textOf(GetParam());
        copy = value;
        EXPECT_EQ(value.text(), GetParam());
        EXPECT_NE(copy.text().data(), value.text().data());
        const TagValue other(value);  // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_NE(other.text().data(), value.text().data());
        EXPECT_EQ(other.text(), GetParam());
    }
    EXPECT_EQ(copy.text(), GetParam());
    EXPECT_EQ(copy.type(), 2);
    EXPECT_EQ(copy.count(), GetParam().size());
}

TEST_P(ValueOfText, LeavesNothingWhereItIsMovedFrom) {
    TagValue source = textOf(GetParam());
    const TagValue moved(std::move(source));
    EXPECT_EQ(moved.text(), GetParam());
    EXPECT_THAT(source.text(), IsEmpty());  // NOLINT(bugprone-use-after-move): that is the test
    EXPECT_EQ(source.rawCount(), 0U);
    EXPECT_EQ(source.outputCount(), 0U);
    source = textOf("again");
    EXPECT_EQ(source.text(), "again");
    EXPECT_EQ(moved.text(), GetParam());
}

TEST_P(ValueOfText, ReplacesAndIsReplacedByAnyOther) {
    for (const std::string_view text : {kInside, kOutside}) {
        TagValue value = textOf(GetParam());
        value = textOf(text);
        EXPECT_EQ(value.text(), text);
        const TagValue other = textOf(GetParam());
        value = other;
        EXPECT_EQ(value.text(), GetParam());
        EXPECT_EQ(other.text(), GetParam());
    }
}

TEST_P(ValueOfText, MayBeAssignedToItself) {
    TagValue value = textOf(GetParam());
    const TagValue& itself = value;
    value = itself;
    EXPECT_EQ(value.text(), GetParam());
}

TEST_P(ValueOfText, SwapsWithAnother) {
    TagValue value = textOf(GetParam());
    TagValue other = textOf(kOutside);
    std::swap(value, other);
    EXPECT_EQ(value.text(), kOutside);
    EXPECT_EQ(other.text(), GetParam());
}

TEST(MovedValue, StaysWhereItIsInMemoryWhenItIsLarge) {
    TagValue source = textOf(kOutside);
    const char* const place = source.text().data();
    const TagValue moved(std::move(source));
    EXPECT_EQ(moved.text().data(), place);
}

TEST(CopiedValue, ThatWasNeverSetKeepsWhatTheEntrySays) {
    const TagValue value(5, 4'000'000'000);
    const TagValue copy(value);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.type(), 5);
    EXPECT_EQ(copy.count(), 4'000'000'000U);
    EXPECT_EQ(copy.byteSize(), 32'000'000'000U);
    EXPECT_EQ(copy.rawCount(), 0U);
    TagValue emptied = textOf(kOutside);
    emptied = value;
    EXPECT_EQ(emptied.count(), 4'000'000'000U);
    EXPECT_THAT(emptied.text(), IsEmpty());
    EXPECT_EQ(emptied.outputCount(), 0U);
}

}  // namespace

}  // namespace veltrace::test

// A file has the same output and messages in either byte order, sound or damaged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>

#include "support/module_run.h"
#include "sweep/bounded_read.h"
#include "sweep/changes.h"
#include "sweep/seeds.h"
#include "sweep/value_difference.h"

namespace veltrace::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ByteOrders : public testing::TestWithParam<Seed> {
protected:
    static void TearDownTestSuite() {
        std::cout << "byte orders: " << pairs << " pairs of files\n";
    }

    static void expectAgreement(const Bytes& little, const Bytes& big) {
        ++pairs;
        const BoundedRead left(little);
        const BoundedRead right(big);
        const std::string difference = differenceOf(left.result().output(), right.result().output(),
                                                    {"ByteOrder", "FormatSignature"});
        ASSERT_TRUE(difference.empty() && left.result().warnings() == right.result().warnings() &&
                    left.result().error() == right.result().error() &&
                    left.result().leftovers() == right.result().leftovers())
            << difference << "\nwarnings: " << testing::PrintToString(left.result().warnings())
            << "\n      and: " << testing::PrintToString(right.result().warnings())
            << "\nerrors: " << testing::PrintToString(left.result().error())
            << "\n   and: " << testing::PrintToString(right.result().error())
            << "\nfiles: " << hexadecimal(little) << "\n  and: " << hexadecimal(big);
        ASSERT_THAT(left.unstated(), IsEmpty()) << hexadecimal(little);
        ASSERT_THAT(right.unstated(), IsEmpty()) << hexadecimal(big);
    }

    static inline std::size_t pairs = 0;
};

INSTANTIATE_TEST_SUITE_P(Seeds, ByteOrders, testing::ValuesIn(seeds()),
                         [](const auto& seed) { return seed.param.name; });

TEST_P(ByteOrders, AgreeAtEveryLength) {
    ASSERT_EQ(GetParam().little.size(), GetParam().big.size());
    for (std::size_t length = 0; length <= GetParam().little.size(); ++length) {
        Bytes little = GetParam().little;
        Bytes big = GetParam().big;
        little.resize(length);
        big.resize(length);
        ASSERT_NO_FATAL_FAILURE(expectAgreement(little, big)) << length << " bytes";
    }
}

TEST_P(ByteOrders, AgreeAfterTheSameChangeOfANumber) {
    for (const Change& change : changesOf(GetParam())) {
        ASSERT_NO_FATAL_FAILURE(expectAgreement(changed(GetParam().little, Order::little, change),
                                                changed(GetParam().big, Order::big, change)))
            << "position " << change.position << ", width " << change.width << ", value "
            << change.value;
    }
}

TEST_P(ByteOrders, DifferInTheByteOrderThatTheyReport) {
    const ModuleRun little(GetParam().little);
    const ModuleRun big(GetParam().big);
    if (little.error()) {
        return;
    }
    if (GetParam().header != 0) {
        EXPECT_FALSE(little.hasField({"ByteOrder"}));
        EXPECT_FALSE(big.hasField({"ByteOrder"}));
        return;
    }
    EXPECT_EQ(little.text({"ByteOrder"}), "little-endian");
    EXPECT_EQ(big.text({"ByteOrder"}), "big-endian");
    const double version = GetParam().little[2];
    EXPECT_THAT(little.numbers({"FormatSignature"}), ElementsAre(73, 73, version, 0));
    EXPECT_THAT(big.numbers({"FormatSignature"}).front(), 77);
}

}  // namespace

}  // namespace veltrace::test

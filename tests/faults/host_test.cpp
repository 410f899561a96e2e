// A host that refuses blocks and arrays, any one and all from any one on.
#include "faults/fault_sweep.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

class HostRefusal : public FaultSweep {
protected:
    static void TearDownTestSuite() {
        blocks.print("the host refuses blocks");
        arrays.print("the host refuses arrays");
    }

    static inline Tally blocks;
    static inline Tally arrays;
};

INSTANTIATE_TEST_SUITE_P(Scenarios, HostRefusal, testing::ValuesIn(scenarios()), nameOfScenario);

TEST_P(HostRefusal, OfAnyBlockEndsAsStated) {
    for (std::uint64_t k = 1; k <= usual().result()->requests().blocks; ++k) {
        zephra::Settings settings = boundedHost();
        settings.failBlock = k;
        ASSERT_NO_FATAL_FAILURE(expectStated({}, settings, blocks)) << "block " << k;
        settings.blockBudget = k;  // the k-th one is refused as well
        ASSERT_NO_FATAL_FAILURE(expectStated({}, settings, blocks)) << "blocks from " << k << " on";
    }
}

TEST_P(HostRefusal, OfAnyArrayEndsAsStated) {
    for (std::uint64_t k = 1; k <= usual().result()->requests().arrays; ++k) {
        zephra::Settings settings = boundedHost();
        settings.failArray = k;
        ASSERT_NO_FATAL_FAILURE(expectStated({}, settings, arrays)) << "array " << k;
        settings.arrayBudget = k;
        ASSERT_NO_FATAL_FAILURE(expectStated({}, settings, arrays)) << "arrays from " << k << " on";
    }
}

// A null value is not stored at all, so what was stored before it stays.
TEST(RefusedArray, OfASecondTagOfOneNameLeavesTheValueOfTheFirst) {
    TiffBuilder file;
    file.image().ascii(271, "one").ascii(271, "two");
    const auto makeIn = [&file](std::uint64_t refusedArray) {
        zephra::Settings settings = strictHost();
        settings.failArray = refusedArray;
        return ModuleRun(file.bytes(), settings).text({"Make"});
    };
    EXPECT_EQ(makeIn(0), std::string("two\0", 4));
    // The structure, five general fields, four of every directory and the byte order come before.
    EXPECT_EQ(makeIn(13), std::string("one\0", 4));
}

}  // namespace

}  // namespace veltrace::test

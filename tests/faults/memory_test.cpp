// Every allocation of module and host fails, alone and with all that follow.
#include "faults/fault_sweep.h"

namespace veltrace::test {

namespace {

class MemoryFault : public FaultSweep {
protected:
    static void TearDownTestSuite() {
        alone.print("one allocation fails");
        lasting.print("all allocations fail from one on");
    }

    static inline Tally alone;
    static inline Tally lasting;
};

INSTANTIATE_TEST_SUITE_P(Scenarios, MemoryFault, testing::ValuesIn(scenarios()), nameOfScenario);

TEST_P(MemoryFault, OfAnyOneAllocationEndsAsStated) {
    refuseEach({.kinds = Request::memory}, alone);
}

TEST_P(MemoryFault, OfAllFromAnyOneOnEndsAsStated) {
    refuseEach({.kinds = Request::memory, .lasts = true}, lasting);
}

}  // namespace

}  // namespace veltrace::test

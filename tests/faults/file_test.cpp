// Every call of the system about files fails or comes short, alone and with all that follow.
#include "faults/fault_sweep.h"

namespace veltrace::test {

namespace {

class FileFault : public FaultSweep {
protected:
    static void TearDownTestSuite() {
        alone.print("one call about a file fails");
        lasting.print("all calls about files fail from one on");
        lastingKind.print("all calls of one function about files fail from one on");
        shortReads.print("a read comes one byte short, alone or with all that follow");
    }

    static inline Tally alone;
    static inline Tally lasting;
    static inline Tally lastingKind;
    static inline Tally shortReads;
};

INSTANTIATE_TEST_SUITE_P(Scenarios, FileFault, testing::ValuesIn(scenarios()), nameOfScenario);

TEST_P(FileFault, OfAnyOneCallEndsAsStated) {
    refuseEach({.kinds = kFileRequests}, alone);
}

TEST_P(FileFault, OfAllFromAnyOneOnEndsAsStated) {
    refuseEach({.kinds = kFileRequests, .lasts = true}, lasting);
}

TEST_P(FileFault, OfOneFunctionFromAnyCallOnEndsAsStated) {
    for (const Request function : kEachFileRequest) {
        refuseEach({.kinds = function, .lasts = true}, lastingKind);
    }
}

TEST_P(FileFault, OfAReadThatComesShortEndsAsStated) {
    refuseEach({.kinds = Request::read, .refusal = Refusal::comesShort}, shortReads);
    refuseEach({.kinds = Request::read, .lasts = true, .refusal = Refusal::comesShort}, shortReads);
}

}  // namespace

}  // namespace veltrace::test

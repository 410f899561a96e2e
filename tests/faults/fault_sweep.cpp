#include "faults/fault_sweep.h"

#include <algorithm>
#include <iostream>

namespace veltrace::test {

namespace {

std::string outcomeOf(const FaultyCall& call, const FaultyCall& usual) {
    const auto& result = call.result();
    if (!result) {
        return "std::bad_alloc of the host";
    }
    if (result->error()) {
        const bool isOfTheHost = result->error()->identifier.starts_with("ZEPHRA:host:");
        return result->error() == usual.result()->error() ? "the usual error"
               : isOfTheHost                              ? "another error of the host"
                                                          : "another error of the module";
    }
    if (result->warnings() != usual.result()->warnings()) {
        return "other warnings";
    }
    return call.differenceFrom(usual).empty() ? "the usual value" : "an empty place";
}

}  // namespace

void Tally::add(const std::string& scenario, const FaultyCall& call, const FaultyCall& usual) {
    scenarios_.insert(scenario);
    ++calls_;
    ++outcomes_[outcomeOf(call, usual)];
}

void Tally::print(const std::string& sweep) const {
    std::cout << "faults: " << sweep << ": " << scenarios_.size() << " scenarios, " << calls_
              << " faulty calls";
    const char* before = ": ";
    for (const auto& [outcome, count] : outcomes_) {
        std::cout << before << count << " " << outcome;
        before = ", ";
    }
    std::cout << '\n';
}

void FaultSweep::SetUp() {
    if (GetParam().messages) {
        std::vector<std::string> identifiers;
        for (const zephra::Message& message : usual_.messages()) {
            identifiers.push_back(message.identifier.substr(sizeof "ZEPHRA:veltrace:" - 1));
        }
        ASSERT_EQ(identifiers, *GetParam().messages);
    }
    ASSERT_EQ(usual_.unstated(usual_), "");
}

void FaultSweep::expectStated(const Fault& fault, const zephra::Settings& settings, Tally& tally) {
    FaultyCall faulty(prepared_, fault, settings);
    tally.add(GetParam().name, faulty, usual_);
    ASSERT_TRUE(fault.first == 0 || faulty.refused() != 0) << "nothing was refused";
    ASSERT_EQ(faulty.unstated(usual_), "");
    ASSERT_EQ(faulty.cleanUp(), "");
    FaultyCall sound(prepared_);
    ASSERT_EQ(sound.differenceFrom(usual_), "") << "in the call that follows";
    ASSERT_EQ(sound.cleanUp(), "");
}

void FaultSweep::refuseEach(Fault fault, Tally& tally) {
    const std::uint64_t last = FaultyCall(prepared_, fault).asked();
    for (std::uint64_t k = 1; k <= last; ++k) {
        SCOPED_TRACE("request " + std::to_string(k) + " of " + std::to_string(last) +
                     (fault.lasts ? ", and all that follow" : ""));
        fault.first = k;
        ASSERT_NO_FATAL_FAILURE(expectStated(fault, boundedHost(), tally));
    }
}

std::string nameOfScenario(const testing::TestParamInfo<Scenario>& info) {
    return info.param.name;
}

}  // namespace veltrace::test

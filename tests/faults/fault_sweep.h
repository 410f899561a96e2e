// Sweeps that refuse one request after the other.
#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

#include "faults/faulty_call.h"

namespace veltrace::test {

/// What came of the calls of a sweep, for the people who read the log.
class Tally {
public:
    /// `usual`: the outcome when nothing is refused.
    void add(const std::string& scenario, const FaultyCall& call, const FaultyCall& usual);
    void print(const std::string& sweep) const;

private:
    std::set<std::string> scenarios_;
    std::size_t calls_ = 0;
    std::map<std::string, std::size_t> outcomes_;
};

/// Base of the tests that run for every scenario.
class FaultSweep : public testing::TestWithParam<Scenario> {
protected:
    FaultSweep() : prepared_(GetParam()), usual_(prepared_) {}
    void SetUp() override;

    /// Makes the call with a fault. Its outcome must be stated, nothing may be left behind beyond
    /// that, and the same call without a fault must then have its usual outcome.
    void expectStated(const Fault& fault, const zephra::Settings& settings, Tally& tally);
    /// All requests of these kinds, the first to the last that the scenario makes.
    void refuseEach(Fault fault, Tally& tally);

    [[nodiscard]] const Prepared& prepared() const { return prepared_; }
    [[nodiscard]] const FaultyCall& usual() const { return usual_; }

private:
    const Prepared prepared_;
    const FaultyCall usual_;
};

/// The last part of the name of a test.
[[nodiscard]] std::string nameOfScenario(const testing::TestParamInfo<Scenario>& info);

}  // namespace veltrace::test

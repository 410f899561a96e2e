// What the host's arrays cost, by their number. Each time is that of a call in which they are made,
// and of freeing them; that of a call which makes none is `emptyCall`.
#include <array>
#include <string>
#include <vector>

#include "zephra/qv.h"

#include "measuring.h"
#include "reading.h"

namespace veltrace::bench {

namespace {

constexpr std::size_t kFields = 12;

std::vector<std::string> fieldNames(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back("Field" + std::to_string(i));
    }
    return names;
}

std::vector<const char*> pointersTo(const std::vector<std::string>& names) {
    std::vector<const char*> pointers;
    for (const std::string& name : names) {
        pointers.push_back(name.c_str());
    }
    return pointers;
}

qvArray* createStructure(std::size_t elements, const std::vector<const char*>& names) {
    const std::array<std::size_t, 2> dimensions{elements, 1};
    return qvCreateStructArray(dimensions.size(), dimensions.data(), static_cast<int>(names.size()),
                               names.data());
}

void emptyCall(benchmark::State& state) {
    measure(state, [] { inCall([] {}); });
}

void scalars(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    measureGrowth(state, "array", count, [count] {
        inCall([count] {
            for (std::size_t i = 0; i < count; ++i) {
                benchmark::DoNotOptimize(qvCreateDoubleScalar(1));
            }
        });
    });
}

void strings(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    measureGrowth(state, "array", count, [count] {
        inCall([count] {
            for (std::size_t i = 0; i < count; ++i) {
                benchmark::DoNotOptimize(qvCreateString("2020:06:01 12:00:00"));
            }
        });
    });
}

/// One structure of many fields, each set by its name.
void fields(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto names = fieldNames(count);
    const auto pointers = pointersTo(names);
    measureGrowth(state, "field", count, [&pointers] {
        inCall([&pointers] {
            qvArray* const structure = createStructure(1, pointers);
            for (const char* const name : pointers) {
                qvSetField(structure, 0, name, qvCreateDoubleScalar(1));
            }
        });
    });
}

/// An array of many structures with twelve fields each.
void elements(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto names = fieldNames(kFields);
    const auto pointers = pointersTo(names);
    measureGrowth(state, "element", count, [count, &pointers] {
        inCall([count, &pointers] {
            qvArray* const structure = createStructure(count, pointers);
            for (std::size_t i = 0; i < count; ++i) {
                for (const char* const name : pointers) {
                    qvSetField(structure, i, name, qvCreateDoubleScalar(1));
                }
            }
        });
    });
}

void sizes(benchmark::internal::Benchmark* family) {
    family->Arg(10)->Arg(1'000)->Arg(60'000)->Complexity(benchmark::oN);
    family->Unit(benchmark::kMicrosecond);
}

BENCHMARK(emptyCall);
BENCHMARK(scalars)->Apply(sizes);
BENCHMARK(strings)->Apply(sizes);
BENCHMARK(fields)->Apply(sizes);
BENCHMARK(elements)->Apply(sizes);

}  // namespace

}  // namespace veltrace::bench

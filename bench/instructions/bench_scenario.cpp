// The command `bench-scenario`: reads one file with the module as users load it, so that valgrind
// can count the instructions of that one read. Without a name it lists the scenarios.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <valgrind/callgrind.h>

#include "zephra/host/host.h"
#include "zephra/host/module.h"

#include "files/generated_files.h"
#include "support/memory_file.h"

namespace {

using veltrace::test::Bytes;
using veltrace::test::MemoryFile;
using veltrace::test::Order;
using namespace veltrace::bench;

struct Scenario {
    std::string_view name;
    Bytes (*file)();
};

constexpr Scenario kScenarios[] = {
    {"jpeg-photograph", [] { return jpegPhotograph(Order::little, 1); }},
    {"classic-photograph", [] { return photograph(Order::big, 1); }},
    {"chain-of-1000", [] { return chain(1000); }},
    {"directory-of-5000", [] { return wideDirectory(5000); }},
    {"rationals-100000", [] { return values(ValueType::rationals, 100'000, Order::little); }},
};

constexpr std::time_t kModified = 1'000'000'000;

/// Whether the module read the file. Ends with the output freed, which is part of what a file
/// costs.
bool read(const zephra::EntryPoint& module, const zephra::Argument& name) {
    const zephra::CallResult result = zephra::Host().call(module, {&name, 1});
    return !result.error() && result.warnings().empty();
}

bool readCounted(const zephra::EntryPoint& module, const zephra::Argument& name) {
    CALLGRIND_START_INSTRUMENTATION;
    const bool succeeded = read(module, name);
    CALLGRIND_STOP_INSTRUMENTATION;
    return succeeded;
}

bool run(const Scenario& scenario) {
    const MemoryFile file(scenario.file());
    file.setModificationTime(kModified);  // the output tells it
    const zephra::Argument name{file.name()};
    const auto module = zephra::Module::load(VELTRACE_MODULE_PATH).entryPoint();
    // What only the first file of a process costs is not counted.
    return read(module, name) && readCounted(module, name);
}

int runNamed(std::string_view name) {
    const auto* const scenario = std::ranges::find(kScenarios, name, &Scenario::name);
    if (scenario == std::end(kScenarios)) {
        std::cerr << "bench-scenario: there is no scenario " << name << '\n';
        return EXIT_FAILURE;
    }
    if (!run(*scenario)) {
        std::cerr << "bench-scenario: the file of " << name << " was not read\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 2) {
            return runNamed(argv[1]);
        }
        for (const Scenario& scenario : kScenarios) {
            std::cout << scenario.name << '\n';
        }
        return argc == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "bench-scenario: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

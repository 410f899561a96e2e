// The whole sandbox, and the module's work in it.
#include "worker/sandbox.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/prctl.h>
#include <sys/time.h>
#include <unistd.h>

#include "zephra/host/host.h"
#include "zephra/host/module.h"

#include "support/memory_file.h"
#include "support/nested_file.h"
#include "support/tiff_builder.h"
#include "worker/in_child.h"
#include "worker/limits.h"
#include "worker/resource_watch.h"

namespace veltrace::cli {
namespace {

using test::Bytes;
using test::inChild;
using test::MemoryFile;
using test::TiffBuilder;

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;
constexpr std::uint16_t kWidthTag = 256;
constexpr std::uint16_t kExifTag = 34665;
constexpr std::uint16_t kMeteringModeTag = 37383;

/// A file with a directory inside its directory.
Bytes cameraFile() {
    TiffBuilder file;
    auto& exif = file.child().shorts(kMeteringModeTag, {5});
    file.image().shorts(kWidthTag, {640}).sub(kExifTag, exif);
    return file.bytes();
}

/// What the module returns for a file in a process that has entered the sandbox.
std::string sandboxedRead(const MemoryFile& file, std::uint64_t memoryBytes = 256 * kMiB) {
    const auto module = zephra::Module::load(VELTRACE_MODULE_PATH).entryPoint();
    return inChild([&]() -> std::string {
        enterSandbox({.memoryBytes = memoryBytes}, SandboxMode::on);
        const MemoryWatch watch;
        const zephra::Argument name{file.name()};
        const auto result = zephra::Host().call(module, {&name, 1});
        if (const auto& error = result.error()) {
            return error->identifier + (watch.ranOut() ? ", memory ran out" : "");
        }
        const zephra::Value output = result.output();
        const auto mode = output.field(0, "DigitalCamera").field(0, "MeteringMode").numbers();
        return output.field(0, "FileModDate").text() + ", " + output.field(0, "Format").text() +
               ", " + (mode.size() == 1 ? std::to_string(static_cast<int>(mode[0])) : "none");
    });
}

/// Sets another time zone, or none, while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* name) {
        if (const char* const before = std::getenv("TZ")) {
            before_ = before;
        }
        set(name);
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { set(before_ ? before_->c_str() : nullptr); }

private:
    static void set(const char* name) { name == nullptr ? unsetenv("TZ") : setenv("TZ", name, 1); }
    std::optional<std::string> before_;
};

TEST(Sandbox, IsDescribedInOneLine) {
    EXPECT_EQ(
        describe({.memoryLimit = true, .noNewPrivileges = true, .landlockAbi = 6, .seccomp = true}),
        "memory limit, no new privileges, Landlock ABI 6, seccomp");
    EXPECT_EQ(describe({.landlockAbi = 1}), "Landlock ABI 1");
    EXPECT_EQ(describe({.noNewPrivileges = true, .seccomp = true}), "no new privileges, seccomp");
    EXPECT_EQ(describe({}), "none");
}

// A signal that interrupts the wait must not be read as an answer.
TEST(AvailableSandbox, IsTheSameWhileSignalsArrive) {
    const std::string calm = describe(availableSandbox());
    const std::string hectic = inChild([&calm]() -> std::string {
        struct sigaction action {};
        action.sa_handler = [](int) {};  // and no SA_RESTART
        sigaction(SIGALRM, &action, nullptr);
        const itimerval often{{0, 500}, {0, 500}};
        setitimer(ITIMER_REAL, &often, nullptr);
        std::string found = calm;
        for (int call = 0; call < 50 && found == calm; ++call) {
            found = describe(availableSandbox());
        }
        return found;
    });
    EXPECT_EQ(hectic, calm);
}

TEST(AvailableSandbox, IsFoundWithoutRestrictingThisProcess) {
    const Sandbox available = availableSandbox();
    EXPECT_EQ(available.memoryLimit, !kHasAddressSanitizer);
    EXPECT_TRUE(available.noNewPrivileges);
    EXPECT_EQ(prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0), 0);
    EXPECT_EQ(prctl(PR_GET_SECCOMP), 0);
}

TEST(AvailableSandbox, IsWhatAProcessThenEnters) {
    const Sandbox available = availableSandbox();
    EXPECT_EQ(inChild([] { return describe(enterSandbox({}, SandboxMode::on)); }),
              describe(available));
}

TEST(Sandbox, SwitchedOffStillLimitsMemoryAndPrivileges) {
    EXPECT_EQ(inChild([] { return describe(enterSandbox({.memoryBytes = 0}, SandboxMode::off)); }),
              "no new privileges");
}

TEST(Sandbox, TheModuleReadsInANamedTimeZone) {
    const TimeZone tokyo("Asia/Tokyo");
    const MemoryFile file(cameraFile());
    file.setModificationTime(1'000'000'000);  // 01:46:40 in Greenwich, nine hours earlier
    EXPECT_EQ(sandboxedRead(file), "09-Sep-2001 10:46:40, tif, 5");
}

TEST(Sandbox, TheModuleReadsInTheTimeZoneOfTheSystem) {
    const TimeZone none(nullptr);
    const MemoryFile file(cameraFile());
    file.setModificationTime(1'000'000'000);
    tzset();
    const std::time_t time = 1'000'000'000;
    std::tm local{};
    localtime_r(&time, &local);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%d-%b-%Y %H:%M:%S", &local);
    EXPECT_EQ(sandboxedRead(file), std::string(date.data()) + ", tif, 5");
}

TEST(Sandbox, TheModuleReadsAJpegFile) {
    const TimeZone greenwich("UTC0");
    const MemoryFile file(test::jpegWithExif(cameraFile()));
    file.setModificationTime(1'000'000'000);
    EXPECT_EQ(sandboxedRead(file), "09-Sep-2001 01:46:40, jpg, 5");
}

TEST(Sandbox, AFileThatCannotBeOpenedIsTheModulesError) {
    const auto module = zephra::Module::load(VELTRACE_MODULE_PATH).entryPoint();
    EXPECT_EQ(inChild([&]() -> std::string {
                  enterSandbox({}, SandboxMode::on);
                  const zephra::Argument missing{std::string("/nonexistent/image.tif")};
                  const auto result = zephra::Host().call(module, {&missing, 1});
                  return result.error() ? result.error()->identifier : "no error";
              }),
              "ZEPHRA:veltrace:badFilename");
}

TEST(Sandbox, ALoopOfDirectoriesEndsWhenMemoryRunsOut) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "AddressSanitizer reserves terabytes of address space";
    }
    TiffBuilder builder;
    builder.image().shorts(kWidthTag, {640});
    builder.image().next(builder.positionOf(builder.image()));
    const MemoryFile file(builder.bytes());
    EXPECT_EQ(sandboxedRead(file, 32 * kMiB), "ZEPHRA:veltrace:unknownException, memory ran out");
}

TEST(Sandbox, EndlessNestingEndsWhenTheStackRunsOut) {
    const MemoryFile file(test::endlessExif());
    EXPECT_EQ(sandboxedRead(file), "ZEPHRA:veltrace:unknownException");
}

}  // namespace
}  // namespace veltrace::cli

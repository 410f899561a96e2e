// Times that no clock has shown.
#include <iostream>

#include "environment/file_steps.h"
#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/time_zone.h"

namespace veltrace::test {

namespace {

struct Moment {
    std::time_t seconds;
    const char* date;
};

// 400 years of the Gregorian calendar have 12,622,780,800 seconds; the years are counted without
// end in both directions, and the year before 1 is 0.
constexpr Moment kMoments[] = {
    {0, "01-Jan-1970 00:00:00"},
    {1, "01-Jan-1970 00:00:01"},
    {-1, "31-Dec-1969 23:59:59"},
    {951'827'696, "29-Feb-2000 12:34:56"},
    {2'147'483'647, "19-Jan-2038 03:14:07"},
    {2'147'483'648, "19-Jan-2038 03:14:08"},
    {-2'147'483'648, "13-Dec-1901 20:45:52"},
    {-2'147'483'649, "13-Dec-1901 20:45:51"},
    {-2'208'988'800, "01-Jan-1900 00:00:00"},
    {-2'208'988'801, "31-Dec-1899 23:59:59"},
    {-11'670'998'400, "29-Feb-1600 00:00:00"},
    {-30'610'224'000, "01-Jan-1000 00:00:00"},
    {-93'724'128'000, "01-Jan--1000 00:00:00"},
    {253'402'300'799, "31-Dec-9999 23:59:59"},
    {253'402'300'800, "01-Jan-10000 00:00:00"},
    // A date has room for 24 characters, 8 of them for the year.
    {3'155'633'032'780'799, "31-Dec-99999999 23:59:59"},
    {-315'631'655'596'800, "01-Jan--9999999 00:00:00"},
};

constexpr std::time_t kFirstYearOfNineDigits = 3'155'633'032'780'800;
constexpr std::time_t kEndOfTheYearMinus10000000 = -315'631'655'596'801;
// The last and the first second whose year, counted from 1900, is an int.
constexpr std::time_t kLastLocalTime = 67'768'036'191'676'799;
constexpr std::time_t kFirstLocalTime = -67'768'040'609'740'800;
constexpr std::time_t kNever[] = {
    kFirstYearOfNineDigits,
    kEndOfTheYearMinus10000000,
    kLastLocalTime,
    kLastLocalTime + 1,
    kFirstLocalTime,
    kFirstLocalTime - 1,
    std::numeric_limits<std::time_t>::max(),
    std::numeric_limits<std::time_t>::max() - 1,
    std::numeric_limits<std::time_t>::min(),
};

std::vector<Bytes> oneOfEachFormat() {
    const Bytes classic = tiffOf(Dir().shorts(271, {1}));
    return {classic, tiffOf({Order::little, Flavour::big}, Dir().shorts(271, {1})),
            jpegWithExif(classic)};
}

class ModificationTime : public testing::Test {
protected:
    static void TearDownTestSuite() { std::cout << "modification times: " << cases << " calls\n"; }
    static inline std::size_t cases = 0;

private:
    const TimeZone zone_{"UTC0"};
};

TEST_F(ModificationTime, IsADateWhereverTheYearFits) {
    for (const Bytes& file : oneOfEachFormat()) {
        for (const Moment& moment : kMoments) {
            const ModifiedAt time(moment.seconds);
            const ModuleRun run(file);
            ++cases;
            EXPECT_THAT(run.messages(), IsEmpty()) << moment.seconds;
            EXPECT_EQ(run.text({"FileModDate"}), moment.date);
        }
    }
}

TEST_F(ModificationTime, ThatHasNoDateEndsTheCall) {
    for (const Bytes& file : oneOfEachFormat()) {
        for (const std::time_t time : kNever) {
            const ModifiedAt modified(time);
            const LeakTolerance tolerance;
            const ModuleRun run(file);
            ++cases;
            EXPECT_THAT(run.messages(), ElementsAre(unknownDate())) << time;
            EXPECT_FALSE(run.output());
        }
    }
}

// No date is made where there is no image directory to put it into.
TEST_F(ModificationTime, ThatHasNoDateDoesNotMatterToAFileWithoutDirectories) {
    const ModifiedAt time(std::numeric_limits<std::time_t>::max());
    const ModuleRun run(Bytes{0xFF, 0xD8, 0xFF, 0xDB, 0, 2});
    ++cases;
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.directories(), 0U);
}

// The zone may carry a time over the end.
TEST_F(ModificationTime, IsLocalAtTheLastDateToo) {
    const TimeZone west("XYZ+1");
    const ModifiedAt time(kFirstYearOfNineDigits + 3599);
    const ModuleRun run(oneOfEachFormat().front());
    ++cases;
    EXPECT_EQ(run.text({"FileModDate"}), "31-Dec-99999999 23:59:59");
}

}  // namespace

}  // namespace veltrace::test

// Time zones that make sense, and values of TZ that make none.
#include "support/time_zone.h"

#include <filesystem>
#include <iostream>

#include "environment/file_steps.h"
#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr std::time_t kSeptember = 1'000'000'000;  // 2001-09-09 01:46:40 UTC
constexpr const char* kSeptemberUtc = "09-Sep-2001 01:46:40";

class Zone : public testing::Test {
protected:
    static void TearDownTestSuite() { std::cout << "time zones: " << cases << " calls\n"; }

    static std::string dateIn(const std::string& zone, std::time_t time) {
        ++cases;
        const TimeZone here(zone);
        const ModifiedAt modified(time);
        const ModuleRun run(tiffOf(Dir().shorts(271, {1})));
        EXPECT_THAT(run.messages(), testing::IsEmpty()) << zone;
        return run.text({"FileModDate"});
    }

    static inline std::size_t cases = 0;
};

TEST_F(Zone, MayBeAnyOffset) {
    EXPECT_EQ(dateIn("<+1234>-12:34", kSeptember), "09-Sep-2001 14:20:40");
    EXPECT_EQ(dateIn("<-0330>3:30", kSeptember), "08-Sep-2001 22:16:40");
    EXPECT_EQ(dateIn("XYZ-24:59:59", kSeptember), "10-Sep-2001 02:46:39");
    EXPECT_EQ(dateIn("XYZ+24:59:59", kSeptember), "08-Sep-2001 00:46:41");
    EXPECT_EQ(dateIn("XYZ-0:00:01", -1), "01-Jan-1970 00:00:00");
}

// Summer begins at 01:00 UTC on the last Sunday of March, 25 March 2001, and ends so in October.
TEST_F(Zone, MayHaveASummer) {
    const std::string zone = "CET-1CEST,M3.5.0,M10.5.0/3";
    EXPECT_EQ(dateIn(zone, 985'481'999), "25-Mar-2001 01:59:59");
    EXPECT_EQ(dateIn(zone, 985'482'000), "25-Mar-2001 03:00:00");
    EXPECT_EQ(dateIn(zone, kSeptember), "09-Sep-2001 03:46:40");
    EXPECT_EQ(dateIn(zone, 1'004'230'799), "28-Oct-2001 02:59:59");
    EXPECT_EQ(dateIn(zone, 1'004'230'800), "28-Oct-2001 02:00:00");
}

// In the south September is before summer: the rule names the first Sunday of October.
TEST_F(Zone, MayHaveItsSummerInJanuary) {
    const std::string zone = "NZST-12NZDT,M10.1.0,M3.3.0/3";
    EXPECT_EQ(dateIn(zone, kSeptember), "09-Sep-2001 13:46:40");
    EXPECT_EQ(dateIn(zone, 0), "01-Jan-1970 13:00:00");
}

TEST_F(Zone, MayBeOneByName) {
    ASSERT_TRUE(std::filesystem::exists("/usr/share/zoneinfo/Asia/Kathmandu"));
    EXPECT_EQ(dateIn("Asia/Kathmandu", kSeptember), "09-Sep-2001 07:31:40");
    EXPECT_EQ(dateIn(":Asia/Kathmandu", kSeptember), "09-Sep-2001 07:31:40");
}

// Such a zone counts leap seconds too: there were 22 until 2001, and the 24th ended the year 2008.
TEST_F(Zone, MayHaveLeapSeconds) {
    if (!std::filesystem::exists("/usr/share/zoneinfo/right/UTC")) {
        GTEST_SKIP() << "there is no zone with leap seconds";
    }
    EXPECT_EQ(dateIn("right/UTC", kSeptember), "09-Sep-2001 01:46:18");
    EXPECT_EQ(dateIn("right/UTC", 1'230'768'022), "31-Dec-2008 23:59:59");
    EXPECT_EQ(dateIn("right/UTC", 1'230'768'023), "31-Dec-2008 23:59:60");
    EXPECT_EQ(dateIn("right/UTC", 1'230'768'024), "01-Jan-2009 00:00:00");
}

TEST_F(Zone, ThatMakesNoSenseIsThatOfGreenwich) {
    for (const char* zone : {"", ":", "::", "kiln!", "/", "/usr", "/etc/passwd", "/dev/null",
                             "/nonexistent", "../../../etc/passwd", "ab", "-3", "<kiln", "<kiln>",
                             "<>-3", "\xFF\xFE\x80", "%s%n%n", "\n", ":<+3>-3"}) {
        EXPECT_EQ(dateIn(zone, kSeptember), kSeptemberUtc) << zone;
    }
}

TEST_F(Zone, MayHaveAVeryLongName) {
    const std::string name(1'000'000, 'A');
    EXPECT_EQ(dateIn("<" + name + ">-3", kSeptember), "09-Sep-2001 04:46:40");
    EXPECT_EQ(dateIn("<" + name, kSeptember), kSeptemberUtc);
    EXPECT_EQ(dateIn("/" + name, kSeptember), kSeptemberUtc);
}

}  // namespace

}  // namespace veltrace::test

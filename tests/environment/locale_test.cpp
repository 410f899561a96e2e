// A host that speaks another language.
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

#include "cli/temporary_directory.h"
#include "environment/file_steps.h"
#include "support/file_test.h"
#include "support/grouping_locale.h"
#include "support/leak_tolerance.h"
#include "support/time_zone.h"
#include "sweep/bounded_read.h"
#include "sweep/seeds.h"
#include "sweep/value_difference.h"

namespace veltrace::test {

namespace {

constexpr std::time_t kMarch = 984'139'200;      // 2001-03-09 12:00:00 UTC
constexpr std::time_t kOctober = 1'002'628'800;  // 2001-10-09 12:00:00 UTC

/// Locales of C, made for the tests: no machine has them all.
class MadeLocales {
public:
    MadeLocales() {
        for (const std::string name : {"de_DE", "ta_IN"}) {
            const std::string command =
                "localedef -i " + name + " -f UTF-8 '" + directory_.at(name + ".UTF-8") + "'";
            EXPECT_EQ(std::system(command.c_str()), 0) << command;
        }
        setenv("LOCPATH", directory_.path().c_str(), 1);
    }
    MadeLocales(const MadeLocales&) = delete;
    MadeLocales& operator=(const MadeLocales&) = delete;
    ~MadeLocales() { unsetenv("LOCPATH"); }

private:
    const cli::test::TemporaryDirectory directory_;
};

class HostLocale : public testing::Test {
protected:
    static void SetUpTestSuite() { locales.emplace(); }
    static void TearDownTestSuite() {
        locales.reset();
        std::cout << "locales: " << cases << " calls\n";
    }
    ~HostLocale() override { std::setlocale(LC_ALL, "C"); }

    static void use(const char* name) {
        const LeakTolerance tolerance;  // the C library keeps each path where it looked
        ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
        char text[8];
        std::snprintf(text, sizeof text, "%.1f", 1.5);
        EXPECT_EQ(text, std::string(*std::localeconv()->decimal_point == ',' ? "1,5" : "1.5"));
    }

    static ModuleRun runAt(std::time_t time) {
        ++cases;
        const ModifiedAt modified(time);
        return ModuleRun(tiffOf(Dir().shorts(271, {1})));
    }

    static void expectSameAs(const BoundedRead& plain, const BoundedRead& local) {
        ++cases;
        EXPECT_EQ(differenceOf(plain.result().output(), local.result().output()), "");
        EXPECT_EQ(plain.result().warnings(), local.result().warnings());
        EXPECT_EQ(plain.result().error(), local.result().error());
    }

    /// Sound files and damaged ones, whose messages name sizes and positions.
    template <class Enter, class Leave>
    static void expectNoDifference(const Enter& enter, const Leave& leave) {
        constexpr std::size_t kStride = 13;
        for (const Seed& seed : seeds()) {
            for (std::size_t cut = 0; cut < seed.little.size(); cut += kStride) {
                Bytes content = seed.little;
                content.resize(content.size() - cut);
                const BoundedRead plain(content);
                enter();
                const BoundedRead local(content);
                leave();
                expectSameAs(plain, local);
            }
        }
    }

    static inline std::optional<MadeLocales> locales;
    static inline std::size_t cases = 0;

private:
    const TimeZone zone_{"UTC0"};
};

TEST_F(HostLocale, OfCLeavesValuesAndMessagesAlone) {
    expectNoDifference([] { use("de_DE.UTF-8"); }, [] { std::setlocale(LC_ALL, "C"); });
}

TEST_F(HostLocale, OfCxxLeavesValuesAndMessagesAlone) {
    std::optional<GlobalGroupingLocale> global;
    expectNoDifference([&global] { global.emplace(); }, [&global] { global.reset(); });
}

TEST_F(HostLocale, OfBothLeavesValuesAndMessagesAlone) {
    const std::locale before;
    const auto enter = [] {
        const LeakTolerance tolerance;  // as above
        std::locale::global(std::locale("de_DE.UTF-8"));
    };
    expectNoDifference(enter, [&before] { std::locale::global(before); });
}

// The date is one that the host shows to people, and months have the names of its language.
TEST_F(HostLocale, NamesTheMonth) {
    EXPECT_EQ(runAt(kMarch).text({"FileModDate"}), "09-Mar-2001 12:00:00");
    use("de_DE.UTF-8");
    EXPECT_EQ(runAt(kOctober).text({"FileModDate"}), "09-Okt-2001 12:00:00");
    EXPECT_EQ(runAt(kMarch).text({"FileModDate"}), "09-M\xC3\xA4r-2001 12:00:00");
}

// A month of twelve bytes makes a date of 29.
TEST_F(HostLocale, WithTooLongANameOfTheMonthEndsTheCall) {
    use("ta_IN.UTF-8");
    const LeakTolerance tolerance;
    EXPECT_THAT(runAt(kOctober).messages(), ElementsAre(unknownDate()));
}

}  // namespace

}  // namespace veltrace::test

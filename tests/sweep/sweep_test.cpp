// Every small damage of every seed ends in what is stated: a sound value, warnings, an error.
#include <iostream>

#include "support/module_run.h"
#include "sweep/bounded_read.h"
#include "sweep/seeds.h"

namespace veltrace::test {

namespace {

/// A seed in one byte order.
struct Start {
    std::string name;
    Bytes content;
};

std::vector<Start> starts() {
    std::vector<Start> all;
    for (const Seed& seed : seeds()) {
        all.push_back({seed.name + "Little", seed.little});
        all.push_back({seed.name + "Big", seed.big});
    }
    return all;
}

void PrintTo(const Start& start, std::ostream* out) {
    *out << start.name;
}

class Sweep : public testing::TestWithParam<Start> {
protected:
    static void TearDownTestSuite() {
        std::cout << "sweep: " << cases << " files, of which " << errors << " gave an error, "
                  << warned << " a value with warnings, " << quiet << " a value alone; " << cutShort
                  << " were cut short\n";
    }

    static void expectStated(const Bytes& content) {
        const BoundedRead read(content);
        ++cases;
        cutShort += read.wasCutShort() ? 1 : 0;
        if (read.result().error()) {
            ++errors;
        } else {
            ++(read.result().warnings().empty() ? quiet : warned);
        }
        const std::string unstated = read.unstated();
        ASSERT_TRUE(unstated.empty()) << unstated << "\nfile: " << hexadecimal(content);
    }

    static inline std::size_t cases = 0;
    static inline std::size_t errors = 0;
    static inline std::size_t warned = 0;
    static inline std::size_t quiet = 0;
    static inline std::size_t cutShort = 0;
};

INSTANTIATE_TEST_SUITE_P(Seeds, Sweep, testing::ValuesIn(starts()),
                         [](const auto& start) { return start.param.name; });

TEST_P(Sweep, EveryPrefixEndsInWhatIsStated) {
    for (std::size_t length = 0; length <= GetParam().content.size(); ++length) {
        Bytes content = GetParam().content;
        content.resize(length);
        ASSERT_NO_FATAL_FAILURE(expectStated(content));
    }
}

TEST_P(Sweep, EveryByteMayBeAnyExtreme) {
    for (std::size_t i = 0; i < GetParam().content.size(); ++i) {
        for (const std::uint8_t value : Bytes{0x00, 0x7F, 0x80, 0xFF}) {
            Bytes content = GetParam().content;
            content[i] = value;
            ASSERT_NO_FATAL_FAILURE(expectStated(content)) << "byte " << i;
        }
    }
}

TEST_P(Sweep, EveryBitMayBeFlipped) {
    for (std::size_t i = 0; i < GetParam().content.size(); ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            Bytes content = GetParam().content;
            content[i] = static_cast<std::uint8_t>(content[i] ^ (1U << bit));
            ASSERT_NO_FATAL_FAILURE(expectStated(content)) << "byte " << i << ", bit " << bit;
        }
    }
}

}  // namespace

}  // namespace veltrace::test

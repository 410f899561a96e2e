// What a dump does to the stream besides writing to it, and to the stack.
#include <functional>
#include <gtest/gtest.h>
#include <iomanip>
#include <set>
#include <sstream>
#include <string>

#include "diag/dump.h"
#include "ifd/ifd_set.h"
#include "support/grouping_locale.h"
#include "support/nested_file.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"

namespace veltrace::test {

using namespace module;

namespace {

/// Calls `body` with a reader, a set, a directory and a tag.
template <class Body>
void withEachKind(const Body& body) {
    inQuietCall([&] {
        const Bytes tiff = tiffOf(Dir().nest(34665, Dir().shorts(305, {31}).shorts(65000, {32})));
        const MemoryFile file(tiff);
        ClassicTiffTagFile reader(file.name().c_str());
        reader.readAll();
        body(static_cast<const TagFile&>(reader));
        body(IFDSet(*OpenedTiff<>(tiff), IfdId::image));
        body(OpenedTiff<>(tiff).readDirectory());
        body(TiffTag(281, IfdId::image, std::vector<double>{16, 16}));
    });
}

/// Keeps the lengths that its text had at each flush.
class FlushedText : public std::stringbuf {
public:
    [[nodiscard]] bool wasFlushedAt(std::size_t length) const { return lengths_.contains(length); }

private:
    int sync() override {
        lengths_.insert(str().size());
        return 0;
    }
    std::set<std::size_t> lengths_;
};

TEST(DumpStream, IsFlushedAfterEveryLine) {
    withEachKind([](const auto& object) {
        FlushedText buffer;
        std::ostream(&buffer) << object;
        const std::string text = buffer.str();
        const std::size_t emptyLines = text.size() - 2;  // the two at the end count as one
        for (std::size_t end = text.find('\n'); end < emptyLines; end = text.find('\n', end + 1)) {
            EXPECT_TRUE(buffer.wasFlushedAt(end + 1)) << text.substr(0, end);
        }
        EXPECT_TRUE(buffer.wasFlushedAt(text.size()));
    });
}

TEST(DumpStream, GetsPlainDecimalNumbersAndKeepsItsFlagsAndLocaleButNotItsPrecision) {
    withEachKind([](const auto& object) {
        std::ostringstream plain;
        plain << object;
        std::ostringstream stream;
        stream.imbue(groupingLocale());
        stream << std::hex << std::showbase << std::showpos << std::scientific
               << std::setprecision(3);
        const std::ios_base::fmtflags flags = stream.flags();
        stream << object;
        EXPECT_EQ(stream.str(), plain.str());
        EXPECT_EQ(stream.flags(), flags);
        EXPECT_EQ(stream.precision(), 8);
        stream.str("");
        stream << std::dec << std::noshowpos << 1234;
        EXPECT_EQ(stream.str(), "1.2.3.4");
    });
}

/// Characters of the dump of a file of this depth; 0 when the stack does not admit it.
std::size_t dumpedCharacters(std::size_t depth) {
    const MemoryFile file(nestedExif(depth));
    ClassicTiffTagFile reader(file.name().c_str());
    try {
        reader.readAll();
    } catch (const StackExhausted&) {
        return 0;
    }
    std::ostringstream stream;
    stream << static_cast<const TagFile&>(reader);
    return stream.str().size();
}

// A dump goes as deep as the read did and must need no more stack per level.
TEST(DumpStack, SufficesForTheDeepestReadableFile) {
    runOnStack(std::size_t{1} << 20, [] {
        inQuietCall([] {
            std::size_t depth = 1;
            std::size_t characters = 0;
            while (const std::size_t deeper = dumpedCharacters(depth)) {
                EXPECT_GT(deeper, characters);
                characters = deeper;
                depth += 1 + depth / 32;
            }
            EXPECT_GT(depth, 100U);
        });
    });
}

}  // namespace

}  // namespace veltrace::test

// Flushing, format flags and locale of the stream that a dump writes to.
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

#include "diag/dump.h"
#include "ifd/ifd_set.h"
#include "support/grouping_locale.h"
#include "support/memory_file.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

/// Calls `body` with a reader of an image and an Exif directory, known tags and an unknown one.
void withReader(const std::function<void(const TagFile&)>& body) {
    inQuietCall([&] {
        TiffBuilder tiff;
        tiff.image().sub(34665, tiff.child().shorts(305, {31}).shorts(65000, {32}));
        const MemoryFile file(jpegWithExif(tiff.bytes()));
        JpegTagFile reader(file.name().c_str());
        reader.readAll();
        body(reader);
    });
}

/// Records the length of its text at each flush.
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
    withReader([](const TagFile& reader) {
        FlushedText buffer;
        std::ostream(&buffer) << reader;
        const std::string text = buffer.str();
        const std::size_t emptyLines = text.size() - 2;  // the two at the end count as one
        for (std::size_t end = text.find('\n'); end < emptyLines; end = text.find('\n', end + 1)) {
            EXPECT_TRUE(buffer.wasFlushedAt(end + 1)) << text.substr(0, end);
        }
        EXPECT_TRUE(buffer.wasFlushedAt(text.size()));
    });
}

/// The dump ignores the format flags of the stream and restores them.
template <class Object>
void expectDecimal(const Object& object) {
    std::ostringstream plain;
    plain << object;
    std::ostringstream stream;
    stream << std::hex << std::showbase << std::showpos << std::scientific;
    const std::ios_base::fmtflags flags = stream.flags();
    stream << object;
    EXPECT_EQ(stream.str(), plain.str());
    EXPECT_EQ(stream.flags(), flags);
}

TEST(DumpStream, GetsDecimalNumbersAndKeepsItsFlags) {
    withReader([](const TagFile& reader) {
        expectDecimal(reader);
        expectDecimal(*reader.ifdSet());
        expectDecimal(reader.ifdSet()->directories().at(0));
    });
}

/// The dump ignores the locale of the stream and restores it.
template <class Object>
void expectWithoutPunctuation(const Object& object) {
    std::ostringstream plain;
    plain << object;
    std::ostringstream stream;
    stream.imbue(groupingLocale());
    stream << object;
    EXPECT_EQ(stream.str(), plain.str());
    stream.str("");
    stream << 1234;
    EXPECT_EQ(stream.str(), "1.2.3.4");
}

TEST(DumpStream, GetsNumbersWithoutPunctuationAndKeepsItsLocale) {
    withReader([](const TagFile& reader) {
        expectWithoutPunctuation(reader);
        expectWithoutPunctuation(*reader.ifdSet());
        expectWithoutPunctuation(reader.ifdSet()->directories().at(0));
        expectWithoutPunctuation(reader.ifdSet()->directories().at(0).knownTags()[0]);
    });
}

}  // namespace

}  // namespace veltrace::test

#include "diag/dump.h"

#include <cstdint>
#include <locale>
#include <string_view>
#include <vector>

#include "ifd/ifd.h"
#include "ifd/ifd_set.h"
#include "tag/tiff_tag.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

namespace {

constexpr std::string_view kHeavyRule =
    "+==========================================================";
constexpr std::string_view kLightRule =
    "+------------------------------------------------------------";

/// Sets decimal numbers and the classic locale. The destructor restores the stream's flags and
/// locale.
class DecimalNumbers {
public:
    explicit DecimalNumbers(std::ostream& stream)
        : stream_(stream),
          flags_(stream.flags(std::ios_base::dec)),
          locale_(stream.imbue(std::locale::classic())) {}
    DecimalNumbers(const DecimalNumbers&) = delete;
    DecimalNumbers& operator=(const DecimalNumbers&) = delete;
    ~DecimalNumbers() {
        stream_.imbue(locale_);
        stream_.flags(flags_);
    }

private:
    std::ostream& stream_;
    std::ios_base::fmtflags flags_;
    std::locale locale_;
};

/// Writes the pieces as one line and flushes, so that a crash loses no finished line.
template <class... Pieces>
void writeLine(std::ostream& stream, const Pieces&... pieces) {
    (stream << ... << pieces) << std::endl;
}

std::string_view nameOf(HeaderByteOrder byteOrder) {
    switch (byteOrder) {
        case HeaderByteOrder::little:
            return "Little Endian";
        case HeaderByteOrder::big:
            return "Big Endian";
    }
    return "unknown???";
}

template <class Tags>
void writeTags(std::ostream& stream, const Tags& tags, std::string_view kind) {
    writeLine(stream, "There are ", tags.size(), ' ', kind, " tags.");
    for (const TiffTag& tag : tags) {
        stream << tag;
    }
}

void writeNumbers(std::ostream& stream, std::string_view label,
                  const std::vector<double>& numbers) {
    stream << label;
    stream.precision(8);
    for (const double number : numbers) {
        stream << number << ' ';
    }
    writeLine(stream);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const TagFile& file) {
    const DecimalNumbers decimalNumbers(stream);
    writeLine(stream, kHeavyRule);
    writeLine(stream, "TagFile:  filename ==> ", file.fileName());
    writeLine(stream, "\tFile pos ==> ", static_cast<std::uint32_t>(file.position()));
    writeLine(stream, "\tFile size ==> ", file.fileSize(), " bytes.");
    writeLine(stream, "\tTiff Header Offset Base ==> ", file.offsetBase());
    writeLine(stream, "\tTiff Header Endian Format ==> ", nameOf(file.headerByteOrder()));
    writeLine(stream, "\tComputer Endian Format ==> ",
              file.computerIsBigEndian() ? "Big Endian" : "Little Endian");
    if (file.ifdSet() != nullptr) {
        stream << *file.ifdSet();
    } else {
        writeLine(stream, "The IFD data structures have not yet been initialized. ");
    }
    writeLine(stream, kHeavyRule);
    return stream << "\n\n" << std::flush;
}

std::ostream& operator<<(std::ostream& stream, const IFDSet& ifdSet) {
    const DecimalNumbers decimalNumbers(stream);
    writeLine(stream, kHeavyRule);
    writeLine(stream, "There are ", ifdSet.getNumIfds(), " IFDs in the current set.");
    std::uint32_t index = 0;
    for (const IFD& ifd : ifdSet.directories()) {
        writeLine(stream, "IFD # ", index++);
        stream << ifd;
    }
    writeLine(stream, "\tThere are ", ifdSet.fieldNames().size(),
              " unique key names in the current set.");
    writeLine(stream, kLightRule);
    for (const auto& [tagId, name] : ifdSet.fieldNames()) {
        writeLine(stream, "ID: ", tagId, " Name:", name);
    }
    writeLine(stream);
    writeLine(stream, kLightRule);
    writeLine(stream, kHeavyRule);
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const IFD& ifd) {
    const DecimalNumbers decimalNumbers(stream);
    writeLine(stream, kLightRule);
    writeTags(stream, ifd.knownTags(), "known");
    writeTags(stream, ifd.unknownTags(), "unknown");
    writeLine(stream, kLightRule);
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const TiffTag& tag) {
    const DecimalNumbers decimalNumbers(stream);
    writeLine(stream, kHeavyRule);
    writeLine(stream, "Tag ID ", tag.tagId(), ": ", tag.name());
    writeLine(stream, "Format:  ", tag.dataType());
    writeLine(stream, "Num Components:  ", tag.count());
    writeLine(stream, "Total Size:  ", tag.byteSize(), " bytes.");
    writeLine(stream, "Offset:  ", static_cast<std::int64_t>(tag.valueOffset()));
    writeNumbers(stream, "Raw Numeric data: ", tag.rawValues());
    writeNumbers(stream, "Processed Numeric data: ", tag.outputValues());
    writeLine(stream, "Raw String data: ", tag.rawText());
    if (tag.subDirectory() != nullptr) {
        stream << *tag.subDirectory();
    }
    writeLine(stream, kHeavyRule);
    return stream;
}

}  // namespace veltrace::module

// The opens of the module, and its walk through JPEG segments.
#include <array>
#include <cstdio>
#include <string_view>
#include <sys/stat.h>

#include "readers/minimal_file.h"
#include "readers/readers.h"

namespace veltrace::bench {

namespace {

using namespace std::string_view_literals;

bool isOpenable(const char* path) {
    return File(fopen64(path, "r")) != nullptr;
}

/// Opens the file to see whether it begins with one of two signatures of the same size.
bool beginsWith(const char* path, std::string_view one, std::string_view other) {
    const File file(fopen64(path, "r"));
    std::array<char, 4> bytes{};
    if (file == nullptr || std::fread(bytes.data(), 1, one.size(), file.get()) < one.size()) {
        return false;
    }
    const std::string_view start(bytes.data(), one.size());
    return start == one || start == other;
}

Format sniff(const char* path) {
    if (beginsWith(path, "\xff\xd8"sv, "\xff\xd8"sv)) {
        return Format::jpeg;
    }
    if (beginsWith(path, "II\x2a\0"sv, "MM\0\x2a"sv)) {
        return Format::classicTiff;
    }
    if (beginsWith(path, "II\x2b\0"sv, "MM\x2b\0"sv)) {
        return Format::bigTiff;
    }
    return Format::other;
}

enum class Segments { exif, none, broken };

/// Moves to the TIFF header in the first APP1 segment.
Segments findExif(std::FILE* file) {
    constexpr unsigned char kStartOfScan = 0xDA;
    constexpr unsigned char kQuantizationTables = 0xDB;
    constexpr unsigned char kApp1 = 0xE1;
    std::array<unsigned char, 6> bytes{};
    if (std::fread(bytes.data(), 1, 2, file) != 2) {
        return Segments::broken;
    }
    // Marker and length of each segment.
    while (std::fread(bytes.data(), 1, 4, file) == 4 && bytes[0] == 0xFF) {
        if (bytes[1] == kStartOfScan || bytes[1] == kQuantizationTables) {
            return Segments::none;
        }
        if (bytes[1] == kApp1) {
            const bool hasName = std::fread(bytes.data(), 1, 6, file) == 6;
            return hasName ? Segments::exif : Segments::broken;
        }
        if (std::fseek(file, bytes[2] * 256L + bytes[3] - 2, SEEK_CUR) != 0) {
            return Segments::broken;
        }
    }
    return Segments::broken;
}

class MinimalReader : public Reader {
public:
    [[nodiscard]] std::string_view name() const override { return "minimal"; }
    [[nodiscard]] bool knows(Format format) const override { return format != Format::other; }

    [[nodiscard]] Delivered count(const std::string& path) override {
        const Format format = isOpenable(path.c_str()) ? sniff(path.c_str()) : Format::other;
        struct stat64 status {};
        if (format == Format::other || stat64(path.c_str(), &status) != 0) {
            return refusal();
        }
        const File file(fopen64(path.c_str(), "rb"));
        if (file == nullptr) {
            return refusal();
        }
        if (format == Format::jpeg) {
            switch (findExif(file.get())) {
                case Segments::exif:
                    break;
                case Segments::none:
                    return {};
                case Segments::broken:
                    return refusal();
            }
        }
        const auto size = static_cast<std::uint64_t>(status.st_size);
        return MinimalFile(file.get(), size, format).readAll();
    }
};

}  // namespace

std::unique_ptr<Reader> minimalReader() {
    return std::make_unique<MinimalReader>();
}

}  // namespace veltrace::bench

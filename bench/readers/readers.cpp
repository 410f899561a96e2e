#include "readers/readers.h"

#include <array>
#include <cstdio>

namespace veltrace::bench {

namespace {

struct Signature {
    std::string_view bytes;
    Format format;
};

using namespace std::string_view_literals;

// The last but one is what the module takes for big-endian BigTIFF.
constexpr Signature kSignatures[] = {
    {"\xff\xd8"sv, Format::jpeg},        {"II\x2a\0"sv, Format::classicTiff},
    {"MM\0\x2a"sv, Format::classicTiff}, {"MM\x2b\0"sv, Format::bigTiff},
    {"II\x2b\0"sv, Format::bigTiff},
};

}  // namespace

Format formatOf(const std::string& path) {
    std::array<char, 4> bytes{};
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    const std::size_t size = file ? std::fread(bytes.data(), 1, bytes.size(), file.get()) : 0;
    const std::string_view start(bytes.data(), size);
    for (const Signature& signature : kSignatures) {
        if (start.starts_with(signature.bytes)) {
            return signature.format;
        }
    }
    return Format::other;
}

std::string_view nameOf(Format format) {
    switch (format) {
        case Format::jpeg:
            return "jpeg";
        case Format::classicTiff:
            return "classic";
        case Format::bigTiff:
            return "bigtiff";
        case Format::other:
            return "other";
    }
    return "other";
}

Readers allReaders(const std::string& modulePath) {
    Readers readers;
    readers.push_back(veltraceReader(modulePath));
    readers.push_back(minimalReader());
    readers.push_back(libtiffReader());
    readers.push_back(unmappedLibtiffReader());
    readers.push_back(libexifReader());
    readers.push_back(exiv2Reader());
    return readers;
}

}  // namespace veltrace::bench

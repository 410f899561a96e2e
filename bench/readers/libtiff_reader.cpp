#include <algorithm>
#include <memory>
#include <tiffio.h>
#include <vector>

#include "readers/libtiff_values.h"
#include "readers/readers.h"

namespace veltrace::bench {

namespace {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

struct Pointer {
    std::uint32_t tag;
    std::uint64_t offset;
};

/// One file: its main chain, then what that points to.
class LibtiffFile {
public:
    LibtiffFile(TIFF& tiff, std::vector<double>& numbers)
        : tiff_(&tiff), numbers_(&numbers), values_(tiff, numbers) {}

    [[nodiscard]] Delivered readAll() {
        readChain();
        // The list grows as directories point to others.
        for (std::size_t i = 0; i < pointers_.size(); ++i) {
            follow(pointers_[i]);
        }
        delivered_.values = numbers_->size();
        return delivered_;
    }

private:
    void readChain() {
        do {
            readDirectory();
        } while (TIFFReadDirectory(tiff_) != 0);
    }

    void readDirectory() {
        ++delivered_.directories;
        for (const FieldConvention& field : kOwnFields) {
            const std::size_t start = numbers_->size();
            delivered_.entries += values_.takeOwn(field) ? 1 : 0;
            if (field.tag == TIFFTAG_SUBIFD) {
                await(field.tag, start);
            }
        }
        readListedTags();
    }

    void readListedTags() {
        const int count = TIFFGetTagListCount(tiff_);
        for (int i = 0; i < count; ++i) {
            const std::uint32_t tag = TIFFGetTagListEntry(tiff_, i);
            const std::size_t start = numbers_->size();
            delivered_.entries += values_.takeListed(tag) ? 1 : 0;
            if (tag == TIFFTAG_EXIFIFD || tag == TIFFTAG_GPSIFD) {
                await(tag, start);
            }
        }
    }

    /// Remembers the directories at the offsets that were just taken, each once.
    void await(std::uint32_t tag, std::size_t firstOffset) {
        for (std::size_t i = firstOffset; i < numbers_->size(); ++i) {
            const auto offset = static_cast<std::uint64_t>((*numbers_)[i]);
            if (std::ranges::find(pointers_, offset, &Pointer::offset) == pointers_.end()) {
                pointers_.push_back({tag, offset});
            }
        }
    }

    void follow(Pointer pointer) {
        if (pointer.tag == TIFFTAG_SUBIFD) {
            if (TIFFSetSubDirectory(tiff_, pointer.offset) != 0) {
                readChain();
            }
            return;
        }
        const int isRead = pointer.tag == TIFFTAG_EXIFIFD
                               ? TIFFReadEXIFDirectory(tiff_, pointer.offset)
                               : TIFFReadGPSDirectory(tiff_, pointer.offset);
        if (isRead != 0) {
            ++delivered_.directories;
            readListedTags();
        }
    }

    TIFF* tiff_;
    std::vector<double>* numbers_;
    LibtiffValues values_;
    std::vector<Pointer> pointers_;
    Delivered delivered_;
};

class LibtiffReader : public Reader {
public:
    LibtiffReader(std::string_view name, const char* mode) : name_(name), mode_(mode) {
        TIFFSetWarningHandler(nullptr);
        TIFFSetErrorHandler(nullptr);
    }

    [[nodiscard]] std::string_view name() const override { return name_; }
    [[nodiscard]] bool knows(Format format) const override {
        return format == Format::classicTiff || format == Format::bigTiff;
    }

    [[nodiscard]] Delivered count(const std::string& path) override {
        const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(path.c_str(), mode_));
        if (tiff == nullptr) {
            return refusal();
        }
        numbers_.clear();
        return LibtiffFile(*tiff, numbers_).readAll();
    }

private:
    std::string_view name_;
    const char* mode_;
    std::vector<double> numbers_;
};

}  // namespace

// "c": a strip stays one strip; the library would make up smaller ones. "m": no memory mapping.
std::unique_ptr<Reader> libtiffReader() {
    return std::make_unique<LibtiffReader>("libtiff", "rc");
}

std::unique_ptr<Reader> unmappedLibtiffReader() {
    return std::make_unique<LibtiffReader>("libtiff-unmapped", "rcm");
}

}  // namespace veltrace::bench

#include <libexif/exif-data.h>
#include <libexif/exif-loader.h>
#include <memory>
#include <vector>

#include "readers/readers.h"

namespace veltrace::bench {

namespace {

template <auto release>
struct Release {
    void operator()(auto* object) const { release(object); }
};

using Loader = std::unique_ptr<ExifLoader, Release<exif_loader_unref>>;
using Data = std::unique_ptr<ExifData, Release<exif_data_unref>>;

/// The number at `bytes`, which are as many as the format takes.
double numberAt(const unsigned char* bytes, ExifFormat format, ExifByteOrder order) {
    switch (format) {
        case EXIF_FORMAT_SHORT:
            return exif_get_short(bytes, order);
        case EXIF_FORMAT_SSHORT:
            return exif_get_sshort(bytes, order);
        case EXIF_FORMAT_LONG:
            return exif_get_long(bytes, order);
        case EXIF_FORMAT_SLONG:
            return exif_get_slong(bytes, order);
        case EXIF_FORMAT_RATIONAL: {
            const ExifRational pair = exif_get_rational(bytes, order);
            return static_cast<double>(pair.numerator) / static_cast<double>(pair.denominator);
        }
        case EXIF_FORMAT_SRATIONAL: {
            const ExifSRational pair = exif_get_srational(bytes, order);
            return static_cast<double>(pair.numerator) / static_cast<double>(pair.denominator);
        }
        default:
            return *bytes;
    }
}

class LibexifReader : public Reader {
public:
    [[nodiscard]] std::string_view name() const override { return "libexif"; }
    [[nodiscard]] bool knows(Format format) const override { return format == Format::jpeg; }

    [[nodiscard]] Delivered count(const std::string& path) override {
        const Data data = load(path);
        if (data == nullptr) {
            return refusal();
        }
        numbers_.clear();
        Delivered delivered;
        const ExifByteOrder order = exif_data_get_byte_order(data.get());
        for (const ExifContent* directory : data->ifd) {
            delivered.directories += directory->count > 0 ? 1 : 0;
            delivered.entries += directory->count;
            for (unsigned i = 0; i < directory->count; ++i) {
                take(*directory->entries[i], order);
            }
        }
        delivered.values = numbers_.size();
        return delivered;
    }

private:
    /// What `exif_data_new_from_file` does, without the repairs, which only data that is not yet
    /// loaded can be told to do without.
    static Data load(const std::string& path) {
        const Loader loader(exif_loader_new());
        exif_loader_write_file(loader.get(), path.c_str());
        const unsigned char* bytes = nullptr;
        unsigned size = 0;
        exif_loader_get_buf(loader.get(), &bytes, &size);
        if (bytes == nullptr) {
            return nullptr;
        }
        Data data(exif_data_new());
        exif_data_unset_option(data.get(), EXIF_DATA_OPTION_IGNORE_UNKNOWN_TAGS);
        exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
        exif_data_load_data(data.get(), bytes, size);
        return data;
    }

    void take(const ExifEntry& entry, ExifByteOrder order) {
        const std::size_t width = exif_format_get_size(entry.format);
        if (entry.format == EXIF_FORMAT_ASCII || width == 0) {
            return;
        }
        for (std::size_t at = 0; at + width <= entry.size; at += width) {
            numbers_.push_back(numberAt(entry.data + at, entry.format, order));
        }
    }

    std::vector<double> numbers_;
};

}  // namespace

std::unique_ptr<Reader> libexifReader() {
    return std::make_unique<LibexifReader>();
}

}  // namespace veltrace::bench

#include <algorithm>
#include <exiv2/exiv2.hpp>
#include <vector>

#include "readers/readers.h"

namespace veltrace::bench {

namespace {

class Exiv2Reader : public Reader {
public:
    Exiv2Reader() {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    }

    [[nodiscard]] std::string_view name() const override { return "exiv2"; }
    [[nodiscard]] bool knows(Format format) const override {
        return format == Format::jpeg || format == Format::classicTiff;
    }

    [[nodiscard]] Delivered count(const std::string& path) override {
        try {
            return countReadable(path);
        } catch (const Exiv2::Error&) {
            return refusal();
        }
    }

private:
    Delivered countReadable(const std::string& path) {
        const auto image = Exiv2::ImageFactory::open(path);
        image->readMetadata();
        numbers_.clear();
        directories_.clear();
        Delivered delivered;
        for (const Exiv2::Exifdatum& entry : image->exifData()) {
            ++delivered.entries;
            noteDirectory(entry.ifdId());
            take(entry);
        }
        delivered.directories = directories_.size();
        delivered.values = numbers_.size();
        return delivered;
    }

    /// There are few directories in a file.
    void noteDirectory(int id) {
        if (std::ranges::find(directories_, id) == directories_.end()) {
            directories_.push_back(id);
        }
    }

    void take(const Exiv2::Exifdatum& entry) {
        if (entry.typeId() == Exiv2::asciiString) {
            return;
        }
        const Exiv2::Value& value = entry.value();
        for (long i = 0; i < value.count(); ++i) {
            numbers_.push_back(static_cast<double>(value.toFloat(i)));
        }
    }

    std::vector<double> numbers_;
    std::vector<int> directories_;
};

}  // namespace

std::unique_ptr<Reader> exiv2Reader() {
    return std::make_unique<Exiv2Reader>();
}

}  // namespace veltrace::bench

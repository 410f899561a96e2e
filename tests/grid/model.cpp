#include "grid/model.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include "grid/grid_values.h"
#include "grid/treatments.h"
#include "support/dictionary_rows.h"

namespace veltrace::test {

namespace {

std::string nameOf(std::uint16_t tag, DirectoryKind kind) {
    std::span<const NameRow> rows = kMainRows;
    if (kind == DirectoryKind::gps) {
        rows = kGpsRows;
    } else if (kind == DirectoryKind::interoperability) {
        rows = kInteroperabilityRows;
    }
    const auto row = std::ranges::find(rows, tag, &NameRow::id);
    return row == rows.end() ? std::string{} : std::string(row->name);
}

bool isTreated(DirectoryKind kind) {
    return kind == DirectoryKind::image || kind == DirectoryKind::exif;
}

std::optional<DirectoryKind> pointedKind(std::uint16_t tag) {
    switch (tag) {
        case 330:
            return DirectoryKind::image;
        case 34665:
            return DirectoryKind::exif;
        case 34853:
            return DirectoryKind::gps;
        case 40965:
            return DirectoryKind::interoperability;
        default:
            return std::nullopt;
    }
}

}  // namespace

Model::Model(const GridFile& file, FileFacts facts) : file_(file), facts_(std::move(facts)) {
    const std::vector<Directory> chain = read(file.image, DirectoryKind::image);
    output_ = outputOf(chain, DirectoryKind::image);
}

void Model::warn(const std::string& identifier, const std::string& text) {
    warnings_.push_back({"ZEPHRA:veltrace:" + identifier, text});
}

std::vector<Model::Directory> Model::read(const GridDirectory& directory, DirectoryKind kind) {
    Directory result;
    result.kind = kind;
    for (const GridEntry& entry : directory.entries) {
        ++entries_;
        std::optional<Tag> tag = decode(entry, kind);
        if (!tag) {
            continue;
        }
        note(result, *tag);
        if (tag->id == 256 || tag->id == 257) {
            if (!tag->numbers.empty()) {
                (tag->id == 256 ? result.width : result.height) = tag->numbers.front();
            }
        } else {
            result.tags.push_back(std::move(*tag));
        }
    }
    if (kind == DirectoryKind::image && isTiff()) {
        addFallbackValues(result);
    }
    if (result.tags.empty()) {
        return {};
    }
    return {std::move(result)};
}

std::optional<Model::Tag> Model::decode(const GridEntry& entry, DirectoryKind kind) {
    Tag tag;
    tag.id = entry.tag;
    tag.name = nameOf(entry.tag, kind);
    const std::string id = std::to_string(entry.tag);
    if (entry.type == 0) {
        warn("TiffTag:noTypeFormatId",
             "Tag ID " + id + " has datatype format \"TIFF_NOTYPE\" and cannot be processed.\n");
        return std::nullopt;
    }
    if (entry.type >= 14) {
        warn("badTagFormat", "Tag ID " + id + " with datatype format value " +
                                 std::to_string(entry.type) +
                                 " is invalid.  Only values 0-13 are allowed.\n");
        return std::nullopt;
    }
    tag.offset = entry.offset;
    if (pointedKind(entry.tag)) {
        return decodePointer(tag, entry, kind) ? std::optional(std::move(tag)) : std::nullopt;
    }
    if (!decodeValue(tag, entry)) {
        return std::nullopt;
    }
    if (isTreated(kind)) {
        Shown shown{std::move(tag.numbers), std::move(tag.text), {}};
        treat(tag.id, tag.offset, shown);
        tag.numbers = std::move(shown.numbers);
        tag.text = std::move(shown.text);
        tag.word = std::move(shown.word);
    }
    return tag;
}

bool Model::decodePointer(Tag& tag, const GridEntry& entry, DirectoryKind kind) {
    tag.isPointer = true;
    if (!isTreated(kind)) {
        const bool isGps = kind == DirectoryKind::gps;
        warn(isGps ? "TiffTag:illegallyNestedIfdWithinGpsIfd"
                   : "TiffTag:illegallyNestedIfdWithinIopIfd",
             "Tag id # " + std::to_string(tag.id) + " is illegal within the " +
                 (isGps ? "GPS" : "Interoperability") +
                 " subIFD.  There may have been some loss of metadata.\n");
        return false;
    }
    tag.chain = read(*entry.target, *pointedKind(tag.id));
    return true;
}

bool Model::decodeValue(Tag& tag, const GridEntry& entry) {
    const std::size_t size = entry.count * elementSizeOf(entry.type);
    const std::string id = std::to_string(tag.id);
    if (size > file_.inlineCapacity() && entry.lostValue) {
        const std::string what =
            tag.name.empty() ? "value for TIFF tag #" + id : "TIFF tag \"" + tag.name + "\" value";
        warn("badTiffTagOffsetDataRead", "Unable to read " + what + " from byte location " +
                                             std::to_string(file_.base() + entry.offset) + ".");
        return false;
    }
    if (entry.type == 13) {
        warn("TiffTag:unrecognizedIfd",
             "Tag " + id + " has an unrecognized TIFF_IFD data format.\n");
        return false;
    }
    if (entry.type == 5 || entry.type == 10) {
        divide(tag, entry);
    } else {
        tag.numbers = entry.numbers;
        tag.text = entry.text;
    }
    return true;
}

void Model::divide(Tag& tag, const GridEntry& entry) {
    bool isByZero = false;
    for (std::size_t i = 0; i + 1 < entry.numbers.size(); i += 2) {
        const double denominator = entry.numbers[i + 1];
        isByZero = isByZero || denominator == 0;
        tag.numbers.push_back(denominator == 0 ? std::numeric_limits<double>::quiet_NaN()
                                               : entry.numbers[i] / denominator);
    }
    if (isByZero) {
        warn(entry.type == 5 ? "rational:badTagValueDivisionByZero"
                             : "signedRational:badTagValueDivisionByZero",
             "The computation of the tag value for \"" + tag.name +
                 "\" involves division by zero.  The value has been set to NaN.");
    }
}

void Model::note(Directory& directory, const Tag& tag) {
    if (tag.id == 258) {
        directory.bitsPerSample = tag.numbers;
    } else if (tag.id == 262 && !tag.numbers.empty()) {
        directory.photometric = codeOf(tag.numbers.front());
    } else if (tag.id == 277) {
        directory.samples = tag.numbers.size();
    } else if (tag.id == 320) {
        directory.hasColormap = true;
    }
}

void Model::addFallbackValues(Directory& directory) {
    struct Row {
        std::uint16_t tag;
        std::vector<double> numbers;
        std::string word;
    };
    const auto lacks = [&directory](std::uint16_t tag) {
        return std::ranges::find(directory.tags, tag, &Tag::id) == directory.tags.end();
    };
    if (lacks(258)) {
        directory.bitsPerSample.assign(directory.samples, 1.0);
    }
    std::vector<double> highest;
    for (const double bits : directory.bitsPerSample) {
        highest.push_back(std::pow(2.0, bits) - 1);
    }
    const Row rows[] = {
        {254, {0}, ""},
        {258, directory.bitsPerSample, ""},
        {259, {1}, "Uncompressed"},
        {263, {1}, ""},
        {266, {1}, ""},
        {273, {}, ""},
        {274, {1}, ""},
        {277, {1}, ""},
        {278, {4294967295}, ""},
        {279, {}, ""},
        {280, {0}, ""},
        {281, highest, ""},
        {282, {}, ""},
        {283, {}, ""},
        {284, {1}, "Chunky"},
        {290, {0.01}, ""},
        {296, {1}, "None"},
        {320, {}, ""},
        {322, {}, ""},
        {323, {}, ""},
        {324, {}, ""},
        {325, {}, ""},
    };
    for (const Row& row : rows) {
        if (lacks(row.tag)) {
            Tag tag;
            tag.id = row.tag;
            tag.name = nameOf(row.tag, DirectoryKind::image);
            tag.numbers = row.numbers;
            tag.word = row.word;
            directory.tags.push_back(std::move(tag));
        }
    }
}

}  // namespace veltrace::test

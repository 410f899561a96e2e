#include <algorithm>
#include <map>
#include <numeric>

#include "grid/model.h"
#include "grid/treatments.h"

namespace veltrace::test {

namespace {

const std::vector<std::string> kGeneralFields{
    "Filename", "FileModDate", "FileSize", "Format",    "FormatVersion",
    "Width",    "Height",      "BitDepth", "ColorType", "FormatSignature"};
const std::vector<std::string> kBaselineFields{"ByteOrder",
                                               "NewSubFileType",
                                               "BitsPerSample",
                                               "Compression",
                                               "PhotometricInterpretation",
                                               "StripOffsets",
                                               "SamplesPerPixel",
                                               "RowsPerStrip",
                                               "StripByteCounts",
                                               "XResolution",
                                               "YResolution",
                                               "ResolutionUnit",
                                               "Colormap",
                                               "PlanarConfiguration",
                                               "TileWidth",
                                               "TileLength",
                                               "TileOffsets",
                                               "TileByteCounts",
                                               "Orientation",
                                               "FillOrder",
                                               "GrayResponseUnit",
                                               "MaxSampleValue",
                                               "MinSampleValue",
                                               "Thresholding"};

bool isBaselineField(const std::string& name) {
    return std::ranges::find(kBaselineFields, name) != kBaselineFields.end();
}

}  // namespace

Expected Model::outputOf(const std::vector<Directory>& chain, DirectoryKind kind) {
    if (chain.empty()) {
        return Expected::emptyDouble();
    }
    const Directory& directory = chain.front();
    Expected structure = Expected::structures(1, fieldsOf(directory));
    if (kind == DirectoryKind::image) {
        fillGeneralFields(structure, directory);
    }
    std::map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < structure.fields.size(); ++i) {
        places[structure.fields[i]] = i;
    }
    for (const Tag& tag : directory.tags) {
        if (tag.name.empty()) {
            continue;
        }
        Expected value = valueOf(tag);
        const auto place = places.find(tag.name);
        if (place != places.end()) {
            structure.places[place->second] = std::move(value);
        } else if (value.kind != Expected::Kind::nothing) {
            ++homelessArrays_;
        }
    }
    if (places.contains("UnknownTags")) {
        structure.place(0, "UnknownTags") = unknownTagsOf(directory);
    }
    return structure;
}

std::vector<std::string> Model::fieldsOf(const Directory& directory) const {
    std::vector<std::string> fields;
    if (directory.kind == DirectoryKind::image) {
        fields = kGeneralFields;
        if (isTiff()) {
            fields.insert(fields.end(), kBaselineFields.begin(), kBaselineFields.end());
        }
    }
    std::map<std::uint16_t, std::string> named;
    bool hasUnknown = false;
    for (const Tag& tag : directory.tags) {
        if (tag.name.empty()) {
            hasUnknown = true;
        } else if (!isTiff() || !isBaselineField(tag.name)) {
            named[tag.id] = tag.name;
        }
    }
    for (const auto& [id, name] : named) {
        fields.push_back(name);
    }
    if (hasUnknown) {
        fields.emplace_back("UnknownTags");
    }
    return fields;
}

void Model::fillGeneralFields(Expected& structure, const Directory& directory) const {
    const bool isBigEndian = file_.order() == Order::big;
    structure.place(0, "Filename") = Expected::string(facts_.name);
    structure.place(0, "FileModDate") = Expected::anything();
    structure.place(0, "FileSize") = Expected::number(static_cast<double>(facts_.size));
    structure.place(0, "Format") = Expected::string(isTiff() ? "tif" : "jpg");
    structure.place(0, "Width") = Expected::number(directory.width);
    structure.place(0, "Height") = Expected::number(directory.height);
    structure.place(0, "ColorType") =
        directory.hasColormap ? Expected::string("indexed") : colorTypeOf(directory.photometric);
    structure.place(0, "BitDepth") = Expected::number(
        std::accumulate(directory.bitsPerSample.begin(), directory.bitsPerSample.end(), 0.0));
    if (!isTiff()) {
        structure.place(0, "FormatSignature") = Expected::emptyDouble();
        return;
    }
    const double mark = isBigEndian ? 77 : 73;
    std::vector<double> signature{mark, mark, 42, 0};
    if (file_.container() == Container::bigTiff) {
        // The version is 43 in the one order and 43 * 256 in the other.
        signature =
            isBigEndian ? std::vector<double>{77, 77, 0, 43} : std::vector<double>{73, 73, 43, 0};
    }
    structure.place(0, "FormatSignature") = Expected::row(signature);
    structure.place(0, "ByteOrder") =
        Expected::string(isBigEndian ? "big-endian" : "little-endian");
}

Expected Model::valueOf(const Tag& tag) {
    if (tag.isPointer) {
        const DirectoryKind kind =
            tag.chain.empty() ? DirectoryKind::image : tag.chain.front().kind;
        return outputOf(tag.chain, kind);
    }
    if (tag.name == "SampleFormat") {
        return sampleFormatOf(tag.numbers);
    }
    if (tag.name == "Colormap") {
        return colormapOf(tag.numbers);
    }
    if (!tag.word.empty()) {
        return Expected::string(tag.word);
    }
    if (!tag.text.empty()) {
        return Expected::string(tag.text);
    }
    if (tag.numbers.empty()) {
        return {};
    }
    const bool isRow = tag.name == "BitsPerSample" || tag.name == "MaxSampleValue";
    return isRow ? Expected::row(tag.numbers) : Expected::column(tag.numbers);
}

Expected Model::unknownTagsOf(const Directory& directory) {
    std::vector<const Tag*> tags;
    for (const Tag& tag : directory.tags) {
        if (tag.name.empty()) {
            tags.push_back(&tag);
        }
    }
    Expected structure = Expected::structures(tags.size(), {"ID", "Offset", "Value"});
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const Tag& tag = *tags[i];
        structure.place(i, "ID") = Expected::number(tag.id);
        structure.place(i, "Offset") = Expected::number(tag.offset);
        if (!tag.text.empty()) {
            structure.place(i, "Value") = Expected::string(tag.text.substr(0, tag.text.find('\0')));
        } else if (!tag.numbers.empty()) {
            structure.place(i, "Value") = Expected::column(tag.numbers);
        } else {
            warn("unknownTagPayloadState", "Tag data for unknown tag ID " + std::to_string(tag.id) +
                                               "is in an unrecognized state.\n");
        }
    }
    return structure;
}

}  // namespace veltrace::test

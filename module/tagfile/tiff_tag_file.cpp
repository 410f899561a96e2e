#include "tagfile/tiff_tag_file.h"

#include <memory>

#include "ifd/ifd_set.h"

namespace veltrace::module {

namespace {

constexpr const char* kTiffFieldNames[] = {
    "ByteOrder",
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
    "Thresholding",
};

}  // namespace

TiffTagFile::TiffTagFile(const char* fileName) : TagFile(fileName) {
    for (const char* name : kTiffFieldNames) {
        appendDefaultFieldName(name);
    }
}

void TiffTagFile::readAll() {
    readHeader();
    setIfdSet(std::make_unique<IFDSet>(*this, IfdId::image));
}

}  // namespace veltrace::module

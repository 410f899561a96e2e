// How libtiff hands out the values of its own tags.
#pragma once

#include <cstdint>
#include <tiffio.h>

namespace veltrace::bench {

/// What `TIFFGetField` wants behind the tag.
enum class Convention {
    oneShort,
    oneLong,
    oneFloat,
    oneDouble,
    twoShorts,
    sixFloats,       ///< a pointer
    offsets,         ///< a pointer to one number for each strip or tile
    colourTables,    ///< three pointers to one number for each value of a sample
    transferTable,   ///< one such pointer, or three
    countedShorts,   ///< a 16-bit count, then a pointer
    countedBytes,    ///< a 32-bit count, then a pointer
    countedOffsets,  ///< a 16-bit count, then a pointer
    text,
};

struct FieldConvention {
    std::uint32_t tag;
    Convention convention;
};

// The tags that libtiff keeps in members of its own. It lists only the others, so these are asked
// for one by one.
constexpr FieldConvention kOwnFields[] = {
    {TIFFTAG_SUBFILETYPE, Convention::oneLong},
    {TIFFTAG_IMAGEWIDTH, Convention::oneLong},
    {TIFFTAG_IMAGELENGTH, Convention::oneLong},
    {TIFFTAG_BITSPERSAMPLE, Convention::oneShort},
    {TIFFTAG_COMPRESSION, Convention::oneShort},
    {TIFFTAG_PHOTOMETRIC, Convention::oneShort},
    {TIFFTAG_THRESHHOLDING, Convention::oneShort},
    {TIFFTAG_FILLORDER, Convention::oneShort},
    {TIFFTAG_STRIPOFFSETS, Convention::offsets},
    {TIFFTAG_ORIENTATION, Convention::oneShort},
    {TIFFTAG_SAMPLESPERPIXEL, Convention::oneShort},
    {TIFFTAG_ROWSPERSTRIP, Convention::oneLong},
    {TIFFTAG_STRIPBYTECOUNTS, Convention::offsets},
    {TIFFTAG_MINSAMPLEVALUE, Convention::oneShort},
    {TIFFTAG_MAXSAMPLEVALUE, Convention::oneShort},
    {TIFFTAG_XRESOLUTION, Convention::oneFloat},
    {TIFFTAG_YRESOLUTION, Convention::oneFloat},
    {TIFFTAG_PLANARCONFIG, Convention::oneShort},
    {TIFFTAG_XPOSITION, Convention::oneFloat},
    {TIFFTAG_YPOSITION, Convention::oneFloat},
    {TIFFTAG_GROUP3OPTIONS, Convention::oneLong},
    {TIFFTAG_GROUP4OPTIONS, Convention::oneLong},
    {TIFFTAG_RESOLUTIONUNIT, Convention::oneShort},
    {TIFFTAG_PAGENUMBER, Convention::twoShorts},
    {TIFFTAG_TRANSFERFUNCTION, Convention::transferTable},
    {TIFFTAG_PREDICTOR, Convention::oneShort},
    {TIFFTAG_COLORMAP, Convention::colourTables},
    {TIFFTAG_HALFTONEHINTS, Convention::twoShorts},
    {TIFFTAG_TILEWIDTH, Convention::oneLong},
    {TIFFTAG_TILELENGTH, Convention::oneLong},
    {TIFFTAG_TILEOFFSETS, Convention::offsets},
    {TIFFTAG_TILEBYTECOUNTS, Convention::offsets},
    {TIFFTAG_SUBIFD, Convention::countedOffsets},
    {TIFFTAG_INKNAMES, Convention::text},
    {TIFFTAG_NUMBEROFINKS, Convention::oneShort},
    {TIFFTAG_EXTRASAMPLES, Convention::countedShorts},
    {TIFFTAG_SAMPLEFORMAT, Convention::oneShort},
    {TIFFTAG_SMINSAMPLEVALUE, Convention::oneDouble},
    {TIFFTAG_SMAXSAMPLEVALUE, Convention::oneDouble},
    {TIFFTAG_JPEGTABLES, Convention::countedBytes},
    {TIFFTAG_YCBCRSUBSAMPLING, Convention::twoShorts},
    {TIFFTAG_YCBCRPOSITIONING, Convention::oneShort},
    {TIFFTAG_REFERENCEBLACKWHITE, Convention::sixFloats},
    {TIFFTAG_IMAGEDEPTH, Convention::oneLong},
    {TIFFTAG_TILEDEPTH, Convention::oneLong},
};

}  // namespace veltrace::bench

#include "entry/create_reader.h"

#include <cstdio>

#include "entry/format_sniffers.h"
#include "entry/host_messages.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::module {

namespace {

void requireOpenable(const char* fileName) {
    std::FILE* file = fopen64(fileName, "r");
    if (file == nullptr) {
        raiseFormattedHostError("ZEPHRA:veltrace:badFilename", "Could not open file \"%s\".",
                                fileName);
    }
    static_cast<void>(std::fclose(file));
}

}  // namespace

TagFile* createReader(const char* fileName) {
    requireOpenable(fileName);
    if (isJpegFile(fileName)) {
        return new JpegTagFile(fileName);
    }
    if (isClassicTiffFile(fileName)) {
        return new ClassicTiffTagFile(fileName);
    }
    if (isBigTiffFile(fileName)) {
        return new BigTiffTagFile(fileName);
    }
    raiseHostError("ZEPHRA:veltrace:unhandledFileFormat", "File format not recognized");
}

}  // namespace veltrace::module

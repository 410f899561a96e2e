// The entry point: checks the argument, chooses the reader, hands its output to the host.
#include <cstdio>

#include "zephra/qvx.h"

#include "entry/format_sniffers.h"
#include "entry/guarded_read.h"
#include "entry/host_messages.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace {

namespace {

void requireOneCharArgument(int inputCount, const qvArray* inputs[]) {
    if (inputCount != 1) {
        raiseHostError("ZEPHRA:veltrace:badInputArgumentCount",
                       "VELTRACE requires exactly one input.\n");
    }
    if (qvGetClassCode(inputs[0]) != qvClassChar) {
        raiseFormattedHostError(
            "ZEPHRA:veltrace:badImageFileArgument",
            "The image file argument cannot have type %s, it must be type char.\n",
            qvGetClassName(inputs[0]));
    }
}

void requireOpenable(const char* fileName) {
    std::FILE* file = fopen64(fileName, "r");
    if (file == nullptr) {
        raiseFormattedHostError("ZEPHRA:veltrace:badFilename", "Could not open file \"%s\".",
                                fileName);
    }
    static_cast<void>(std::fclose(file));
}

/// The caller owns the reader.
TagFile* createReader(const char* fileName) {
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

}  // namespace

}  // namespace veltrace

// Kept: name and reader are plain pointers. A host error unwinds through this function, and then
// the host reclaims the name; a destructor that closes the file may throw, which no smart pointer
// survives.
__attribute__((visibility("default"))) void qvxFunction(int /*outputCount*/, qvArray* outputs[],
                                                        int inputCount, const qvArray* inputs[]) {
    using namespace veltrace;
    requireOneCharArgument(inputCount, inputs);
    char* fileName = qvArrayToString(inputs[0]);
    requireOpenable(fileName);
    TagFile* reader = createReader(fileName);
    readAllGuarded(reader, fileName);
    outputs[0] = reader->outputValue();
    qvFree(fileName);
    delete reader;
}

// The entry point: checks the argument, reads the file, returns the output to the host.
#include "zephra/qvx.h"

#include "entry/create_reader.h"
#include "entry/guarded_read.h"
#include "entry/host_messages.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

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

}  // namespace

}  // namespace veltrace::module

// Kept: name and reader are plain pointers. After a host error the host reclaims the name. The
// reader's destructor may throw, which would end the process inside a smart pointer.
__attribute__((visibility("default"))) void qvxFunction(int /*outputCount*/, qvArray* outputs[],
                                                        int inputCount, const qvArray* inputs[]) {
    using namespace veltrace::module;
    requireOneCharArgument(inputCount, inputs);
    char* fileName = qvArrayToString(inputs[0]);
    TagFile* reader = createReader(fileName);
    readAllGuarded(reader, fileName);
    outputs[0] = reader->outputValue();
    qvFree(fileName);
    delete reader;
}

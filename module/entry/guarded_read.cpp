#include "entry/guarded_read.h"

#include <cxxabi.h>

#include "zephra/qv.h"

#include "entry/errors.h"
#include "entry/host_messages.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

namespace {

void release(TagFile* reader, char* fileName) {
    delete reader;
    qvFree(fileName);
}

}  // namespace

void readAllGuarded(TagFile* reader, char* fileName) {
    try {
        reader->readAll();
    } catch (const VeltraceFatalError& error) {
        release(reader, fileName);
        raiseHostError(error.identifier.c_str(), error.message);
    } catch (const VeltraceRecoverableError& error) {
        if (reader->getNumIfds() != 0) {
            issueHostWarning(error.identifier.c_str(), error.message);
            return;
        }
        release(reader, fileName);
        raiseHostError(error.identifier.c_str(), error.message);
    } catch (abi::__forced_unwind&) {
        throw;  // the thread is exiting; swallowing this would abort the process
    } catch (...) {
        // Kept: the reader is not destroyed. Whatever broke the read (memory, stack) could break
        // its destruction too. The host reclaims the name. The texts are literals, as there may be
        // no memory to compose them.
        raiseFormattedHostError("ZEPHRA:veltrace:unknownException",
                                "Caught an unknown exception in veltrace.");
    }
}

}  // namespace veltrace::module

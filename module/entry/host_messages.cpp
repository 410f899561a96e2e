#include "entry/host_messages.h"

namespace veltrace::module {

void raiseHostError(const char* identifier, const std::string& text) {
    raiseFormattedHostError(identifier, text.c_str());
}

void issueHostWarning(const char* identifier, const std::string& text) {
    qvxWarnMsgIdAndTxt(identifier, text.c_str());
}

}  // namespace veltrace::module

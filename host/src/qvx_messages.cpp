// Message functions of the host interface.
#include <cstdarg>
#include <string>
#include <utility>

#include "zephra/qvx.h"

#include "boundary.h"
#include "call.h"
#include "message_format.h"

namespace {

zephra::Message makeMessage(const char* identifier, const char* format, std::va_list arguments) {
    return {identifier != nullptr ? identifier : "", zephra::formatMessage(format, arguments)};
}

}  // namespace

// Also outside of any call it must not return.
// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is variadic
void qvxErrMsgIdAndTxt(const char* identifier, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    zephra::Message message = makeMessage(identifier, format, arguments);
    va_end(arguments);
    if (zephra::Call* const call = zephra::Call::current()) {
        call->noteRaised();
    }
    zephra::raise(std::move(message));
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is variadic
void qvxWarnMsgIdAndTxt(const char* identifier, const char* format, ...) {
    zephra::Call* const call = zephra::Call::current();
    if (call == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    zephra::Message message = makeMessage(identifier, format, arguments);
    va_end(arguments);
    call->warn(std::move(message));
}

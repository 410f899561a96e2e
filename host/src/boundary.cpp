#include "boundary.h"

#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

namespace zephra {

namespace {

// Not derived from std::exception, so that a module which handles those does not catch it.
struct RaisedError {
    Message message;
};

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// Type of the current exception, as written in source code; "" when it is unknown.
std::string nameOfCurrentException() {
    if (!std::current_exception()) {
        return {};  // it comes from another language and has no type of C++
    }
    const std::type_info* const type = abi::__cxa_current_exception_type();
    int status = 0;
    const std::unique_ptr<char, Free> name(
        abi::__cxa_demangle(type->name(), nullptr, nullptr, &status));
    return name ? name.get() : type->name();
}

Message foreignException(const char* what) {
    const std::string type = nameOfCurrentException();
    std::string text = "The module threw an exception of ";
    text += type.empty() ? "an unknown type" : "type " + type;
    if (what != nullptr) {
        text += std::string(": ") + what;
    }
    return {"ZEPHRA:host:foreignException", text};
}

}  // namespace

void raise(Message message) {
    throw RaisedError{std::move(message)};
}

std::optional<Message> runModule(const std::function<void()>& module) {
    try {
        module();
        return std::nullopt;
    } catch (RaisedError& error) {
        return std::move(error.message);
    } catch (const std::exception& exception) {
        return foreignException(exception.what());
    } catch (abi::__forced_unwind&) {
        throw;  // the thread is exiting; to swallow this would end the process
    } catch (...) {
        return foreignException(nullptr);
    }
}

}  // namespace zephra

// Calls that leave something behind by design.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELTRACE_TEST_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef VELTRACE_TEST_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace veltrace::test {

/// While one lives, memory that this thread allocates is not reported as leaked. For calls that
/// leave their reader behind: unknown exceptions, and errors raised while output is built.
class LeakTolerance {
public:
    LeakTolerance() {
#ifdef VELTRACE_TEST_ADDRESS_SANITIZER
        __lsan_disable();
#endif
    }
    LeakTolerance(const LeakTolerance&) = delete;
    LeakTolerance& operator=(const LeakTolerance&) = delete;
    ~LeakTolerance() {
#ifdef VELTRACE_TEST_ADDRESS_SANITIZER
        __lsan_enable();
#endif
    }
};

}  // namespace veltrace::test

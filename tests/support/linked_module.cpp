// The module under test is linked into this program.
#include "zephra/qvx.h"

#include "support/module_run.h"

namespace veltrace::test {

zephra::EntryPoint moduleUnderTest() {
    return &qvxFunction;
}

}  // namespace veltrace::test

// The module under test is the shared library as users load it.
#include "zephra/host/module.h"

#include "support/module_run.h"

namespace veltrace::test {

zephra::EntryPoint moduleUnderTest() {
    static const zephra::Module module = zephra::Module::load(VELTRACE_MODULE_PATH);
    return module.entryPoint();
}

}  // namespace veltrace::test

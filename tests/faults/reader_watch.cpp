#include "faults/reader_watch.h"

namespace veltrace::test {

namespace {

ReaderWatch watch;

}  // namespace

void resetReaderWatch() {
    watch = {};
}

const ReaderWatch& readerWatch() {
    return watch;
}

}  // namespace veltrace::test

// `veltrace::module::readAllGuarded(TagFile*, char*)`, which the linker has every caller reach
// through here.
extern "C" void __real__ZN8veltrace6module14readAllGuardedEPNS0_7TagFileEPc(
    veltrace::module::TagFile* reader, char* fileName);
extern "C" void __wrap__ZN8veltrace6module14readAllGuardedEPNS0_7TagFileEPc(
    veltrace::module::TagFile* reader, char* fileName);
extern "C" void __wrap__ZN8veltrace6module14readAllGuardedEPNS0_7TagFileEPc(
    veltrace::module::TagFile* reader, char* fileName) {
    using namespace veltrace::test;
    watch = {Stage::reading, reader};
    __real__ZN8veltrace6module14readAllGuardedEPNS0_7TagFileEPc(reader, fileName);
    watch.stage = Stage::delivering;
}

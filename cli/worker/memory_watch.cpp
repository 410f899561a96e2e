#include "worker/memory_watch.h"

namespace veltrace::cli {

namespace {

// The handler is a plain function, so it finds the watch here.
std::atomic<bool>* noted = nullptr;

[[noreturn]] void noteAndThrow() {
    *noted = true;
    throw std::bad_alloc();
}

}  // namespace

MemoryWatch::MemoryWatch() {
    noted = &ranOut_;
    previous_ = std::set_new_handler(noteAndThrow);
}

MemoryWatch::~MemoryWatch() {
    std::set_new_handler(previous_);
}

}  // namespace veltrace::cli

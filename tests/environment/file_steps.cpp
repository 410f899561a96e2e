#include "environment/file_steps.h"

#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <utility>

namespace veltrace::test {

namespace {

thread_local FileSteps* observer = nullptr;
thread_local std::optional<std::time_t> modified;

}  // namespace

FileSteps::FileSteps(std::function<void(std::size_t, Step)> before) : before_(std::move(before)) {
    observer = this;
}

FileSteps::~FileSteps() {
    observer = nullptr;
}

void FileSteps::take(Step step) {
    if (FileSteps* const current = std::exchange(observer, nullptr); current != nullptr) {
        current->before_(current->taken_++, step);
        observer = current;
    }
}

bool FileSteps::isWatching() {
    return observer != nullptr;
}

ModifiedAt::ModifiedAt(std::time_t time) {
    modified = time;
}

ModifiedAt::~ModifiedAt() {
    modified.reset();
}

}  // namespace veltrace::test

// The linker makes calls of each function calls of its second form here, and calls the first one
// "real".
using veltrace::test::FileSteps;
using veltrace::test::Step;

extern "C" {

std::FILE* __real_fopen64(const char* name, const char* mode);
int __real_stat64(const char* name, struct stat64* status);
std::size_t __real_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
int __real_fseek(std::FILE* file, long offset, int origin);
long __real_ftell(std::FILE* file);
int __real_fclose(std::FILE* file);

std::FILE* __wrap_fopen64(const char* name, const char* mode) {
    FileSteps::take(Step::open);
    std::FILE* const file = __real_fopen64(name, mode);
    if (file != nullptr && FileSteps::isWatching()) {
        std::setbuf(file, nullptr);
    }
    return file;
}

int __wrap_stat64(const char* name, struct stat64* status) {
    FileSteps::take(Step::status);
    const int result = __real_stat64(name, status);
    if (veltrace::test::modified) {
        status->st_mtim.tv_sec = *veltrace::test::modified;
    }
    return result;
}

std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
    FileSteps::take(Step::read);
    return __real_fread(to, size, count, file);
}

int __wrap_fseek(std::FILE* file, long offset, int origin) {
    FileSteps::take(Step::move);
    return __real_fseek(file, offset, origin);
}

long __wrap_ftell(std::FILE* file) {
    FileSteps::take(Step::tell);
    return __real_ftell(file);
}

int __wrap_fclose(std::FILE* file) {
    FileSteps::take(Step::close);
    return __real_fclose(file);
}

}  // extern "C"

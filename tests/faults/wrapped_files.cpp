// Every function by which the module gets at files, refused on demand. The linker makes calls of
// `f` from the objects of this program calls of `__wrap_f`, and those of `__real_f` calls of `f`.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sys/stat.h>

#include "faults/injection.h"

namespace {

using namespace veltrace::test;

bool isRefusedWith(Request kind, int reason) {
    const bool isRefused = detail::isRefused(kind);
    if (isRefused) {
        errno = reason;
    }
    return isRefused;
}

}  // namespace

extern "C" {

std::FILE* __real_fopen64(const char* name, const char* mode);
std::FILE* __wrap_fopen64(const char* name, const char* mode);
std::FILE* __wrap_fopen64(const char* name, const char* mode) {
    if (isRefusedWith(Request::open, EMFILE)) {
        return nullptr;
    }
    std::FILE* const stream = __real_fopen64(name, mode);
    detail::noteStream(stream);
    return stream;
}

int __real_stat64(const char* name, struct stat64* status);
int __wrap_stat64(const char* name, struct stat64* status);
int __wrap_stat64(const char* name, struct stat64* status) {
    return isRefusedWith(Request::status, EIO) ? -1 : __real_stat64(name, status);
}

std::size_t __real_fread(void* buffer, std::size_t size, std::size_t count, std::FILE* stream);
std::size_t __wrap_fread(void* buffer, std::size_t size, std::size_t count, std::FILE* stream);
std::size_t __wrap_fread(void* buffer, std::size_t size, std::size_t count, std::FILE* stream) {
    if (!isRefusedWith(Request::read, EIO)) {
        return __real_fread(buffer, size, count, stream);
    }
    if (detail::refusal() == Refusal::fails || size * count == 0) {
        return 0;
    }
    return __real_fread(buffer, 1, size * count - 1, stream) / size;
}

/// What a call of fread becomes where the compiler knows how large the buffer is.
std::size_t __wrap___fread_chk(void* buffer, std::size_t room, std::size_t size, std::size_t count,
                               std::FILE* stream);
std::size_t __wrap___fread_chk(void* buffer, std::size_t room, std::size_t size, std::size_t count,
                               std::FILE* stream) {
    if (size != 0 && room / size < count) {
        __builtin_trap();
    }
    return __wrap_fread(buffer, size, count, stream);
}

int __real_fseek(std::FILE* stream, long offset, int origin);
int __wrap_fseek(std::FILE* stream, long offset, int origin);
int __wrap_fseek(std::FILE* stream, long offset, int origin) {
    return isRefusedWith(Request::seek, EIO) ? -1 : __real_fseek(stream, offset, origin);
}

long __real_ftell(std::FILE* stream);
long __wrap_ftell(std::FILE* stream);
long __wrap_ftell(std::FILE* stream) {
    return isRefusedWith(Request::tell, EIO) ? -1 : __real_ftell(stream);
}

int __real_fclose(std::FILE* stream);
int __wrap_fclose(std::FILE* stream);
int __wrap_fclose(std::FILE* stream) {
    const bool isRefused = isRefusedWith(Request::close, EIO);
    if (!detail::noteClosed(stream)) {
        return EOF;  // it is gone, and to close it again would do harm
    }
    const int closed = __real_fclose(stream);
    return isRefused ? EOF : closed;
}

}  // extern "C"

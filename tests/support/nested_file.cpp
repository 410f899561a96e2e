#include "support/nested_file.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <pthread.h>
#include <system_error>
#include <ucontext.h>

#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kDirectoryBytes = 2 + 12 + 4;

void appendDirectory(Bytes& file, std::uint16_t tag, std::uint16_t type, std::uint32_t value) {
    append(file, Order::little, std::uint16_t{1});
    append(file, Order::little, tag);
    append(file, Order::little, type);
    append(file, Order::little, std::uint32_t{1});
    append(file, Order::little, value);
    append(file, Order::little, std::uint32_t{0});
}

void appendPointer(Bytes& file, std::size_t target) {
    appendDirectory(file, 34665, 4, static_cast<std::uint32_t>(target));
}

Bytes header() {
    Bytes file = bytesOf("II");
    append(file, Order::little, std::uint16_t{42});
    append(file, Order::little, static_cast<std::uint32_t>(kHeaderBytes));
    return file;
}

}  // namespace

Bytes nestedExif(std::size_t depth) {
    Bytes file = header();
    for (std::size_t level = 0; level < depth; ++level) {
        appendPointer(file, file.size() + kDirectoryBytes);
    }
    appendDirectory(file, 37383, 3, 5);
    return file;
}

Bytes endlessExif() {
    Bytes file = header();
    appendPointer(file, kHeaderBytes);
    return file;
}

void runOnForeignStack(std::size_t stackBytes, const std::function<void()>& body) {
    const auto stack = std::make_unique<std::byte[]>(stackBytes);
    static thread_local const std::function<void()>* current = nullptr;
    current = &body;
    ucontext_t outside{};
    ucontext_t inside{};
    if (getcontext(&inside) != 0) {
        throw std::system_error(errno, std::generic_category(), "getcontext");
    }
    inside.uc_stack.ss_sp = stack.get();
    inside.uc_stack.ss_size = stackBytes;
    inside.uc_link = &outside;
    makecontext(
        &inside, [] { (*current)(); }, 0);
    if (swapcontext(&outside, &inside) != 0) {
        throw std::system_error(errno, std::generic_category(), "swapcontext");
    }
}

void runOnStack(std::size_t stackBytes, const std::function<void()>& body) {
    const auto require = [](int code) {
        if (code != 0) {
            throw std::system_error(code, std::generic_category(), "pthread");
        }
    };
    pthread_attr_t attributes;
    require(pthread_attr_init(&attributes));
    require(pthread_attr_setstacksize(&attributes, stackBytes));
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    require(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body)));
    require(pthread_join(thread, nullptr));
    require(pthread_attr_destroy(&attributes));
}

}  // namespace veltrace::test

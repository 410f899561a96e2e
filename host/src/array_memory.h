// Where the arrays of a call are.
#pragma once

#include <cstddef>

namespace zephra {

// Whether AddressSanitizer watches the ends of blocks.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kHasBlockChecker = true;
#elif defined(__has_feature)
inline constexpr bool kHasBlockChecker = __has_feature(address_sanitizer);
#else
inline constexpr bool kHasBlockChecker = false;
#endif

/// Memory for many small blocks that all live until the end. A result may hold millions of scalars
/// and short strings: to ask the system for each, and to give each back, would take most of the
/// time of a call.
class ArrayMemory {
public:
    /// Larger blocks are better off on their own; so are all where a checker watches.
    static constexpr std::size_t kLargestBlock = kHasBlockChecker ? 0 : 1024;

    ArrayMemory() = default;
    ArrayMemory(const ArrayMemory&) = delete;
    ArrayMemory& operator=(const ArrayMemory&) = delete;
    ~ArrayMemory();

    /// A block of `size` bytes, at most `kLargestBlock`, all zero, aligned for any number or
    /// pointer. It lives as long as this object. Null when memory is exhausted.
    [[nodiscard]] void* allocate(std::size_t size) noexcept {
        size = (size + alignof(double) - 1) / alignof(double) * alignof(double);
        if (size > left_ && !addChunk()) {
            return nullptr;
        }
        std::byte* const block = free_;
        free_ += size;
        left_ -= size;
        return block;
    }

private:
    struct Chunk;

    [[nodiscard]] bool addChunk() noexcept;

    Chunk* last_ = nullptr;
    std::size_t chunkBytes_ = 4096;
    std::byte* free_ = nullptr;
    std::size_t left_ = 0;
};

}  // namespace zephra

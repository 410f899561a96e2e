// A host that has only so many blocks to give.
#pragma once

#include <cstddef>

namespace veltrace::test {

/// While one lives, calls of `qvMalloc` by this thread get NULL once `blocks` were given. A
/// damaged file may hold a chain of directories that leads back into itself, which is read for as
/// long as the host gives blocks for its tables. The program must be linked with
/// `--wrap=qvMalloc`.
class BlockBudget {
public:
    explicit BlockBudget(std::size_t blocks);
    BlockBudget(const BlockBudget&) = delete;
    BlockBudget& operator=(const BlockBudget&) = delete;
    ~BlockBudget();

    /// Whether some request has been refused.
    [[nodiscard]] bool exceeded() const;
};

}  // namespace veltrace::test

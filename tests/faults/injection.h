// What the system refuses while a call runs.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veltrace::test {

/// What module and host ask of the system. Every allocation is one kind, whatever function makes
/// it. Kinds can be joined to sets of them.
enum class Request : unsigned {
    memory = 1U << 0U,
    open = 1U << 1U,
    status = 1U << 2U,
    read = 1U << 3U,
    seek = 1U << 4U,
    tell = 1U << 5U,
    close = 1U << 6U,
};

constexpr Request operator|(Request left, Request right) {
    return Request{static_cast<unsigned>(left) | static_cast<unsigned>(right)};
}

constexpr bool contains(Request kinds, Request kind) {
    return (static_cast<unsigned>(kinds) & static_cast<unsigned>(kind)) != 0;
}

inline constexpr Request kNoRequest{0};
inline constexpr Request kEachFileRequest[] = {Request::open, Request::status, Request::read,
                                               Request::seek, Request::tell,   Request::close};
inline constexpr Request kFileRequests = Request::open | Request::status | Request::read |
                                         Request::seek | Request::tell | Request::close;

/// What becomes of a refused request.
enum class Refusal {
    fails,       ///< as the function says that it fails; of a file nothing was read or moved
    comesShort,  ///< a read of all bytes but the last; other requests fail
};

/// Requests of some kinds are counted together, and some of them are refused.
struct Fault {
    Request kinds = kNoRequest;
    std::uint64_t first = 0;  ///< 1-based number of the first one to be refused; 0: none
    bool lasts = false;       ///< that one alone, or all that follow as well
    Refusal refusal = Refusal::fails;
};

/// While one lives, the requests of this thread are counted, a fault is brought about, and what was
/// granted is remembered, also beyond its life, until it is given back. One at a time. A stream
/// whose closing is refused is closed all the same, as the system does it.
class Injection {
public:
    explicit Injection(const Fault& fault);
    Injection(const Injection&) = delete;
    Injection& operator=(const Injection&) = delete;
    ~Injection();

    /// Requests so far, granted or not, and the refused ones.
    [[nodiscard]] static std::uint64_t asked(Request kinds);
    [[nodiscard]] static std::uint64_t refused(Request kinds);
    /// Streams that were closed and are not open: closed twice, or never opened.
    [[nodiscard]] static std::uint64_t strayCloses();

    /// Granted blocks and streams that have not been given back.
    [[nodiscard]] static std::size_t blocksOut();
    [[nodiscard]] static bool isOut(const void* block);
    [[nodiscard]] static std::size_t streamsOut();
};

namespace detail {

/// Counts a request of this thread. True when it is to be refused.
[[nodiscard]] bool isRefused(Request kind);
[[nodiscard]] Refusal refusal();
void noteBlock(void* block);
void noteFreed(void* block);
void noteStream(void* stream);
/// False for a stream that is not open.
[[nodiscard]] bool noteClosed(void* stream);

}  // namespace detail

}  // namespace veltrace::test

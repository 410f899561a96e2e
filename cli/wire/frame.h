// Frames on a pipe: the number of bytes as 32 bits, the id of a request as 64 bits, and that many
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "wire/bytes.h"

namespace veltrace::cli {

struct Frame {
    std::uint64_t id = 0;
    std::string_view payload;  ///< part of the buffer that gave the frame
};

inline constexpr std::size_t kFrameHeader = sizeof(std::uint32_t) + sizeof(std::uint64_t);

/// Begins a frame at the end of `bytes`; returns where it begins. The payload is appended next.
[[nodiscard]] std::size_t beginFrame(std::string& bytes, std::uint64_t id);

/// Ends the frame that begins at `begin`. Its payload must have less than 4 GiB.
void endFrame(std::string& bytes, std::size_t begin);

/// Frames of a stream, as they arrive.
class FrameBuffer {
public:
    explicit FrameBuffer(std::size_t maxPayload) : maxPayload_(maxPayload) {}

    /// Room for `size` bytes; bytes that are read into it count once `filled` is called.
    [[nodiscard]] char* room(std::size_t size);
    void filled(std::size_t size) { end_ += size; }

    /// The next complete frame; valid until the next call of this or `room`. Throws BadFrame when
    /// its payload is larger than allowed.
    [[nodiscard]] std::optional<Frame> next();

    /// Bytes of the incomplete frame according to its header; 0 while that is incomplete too.
    [[nodiscard]] std::size_t announced() const;

    /// Bytes of the incomplete frame that have arrived.
    [[nodiscard]] std::size_t pending() const { return end_ - begin_; }

private:
    [[nodiscard]] std::string_view waiting() const {
        return {bytes_.data() + begin_, end_ - begin_};
    }

    std::size_t maxPayload_;
    std::string bytes_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace veltrace::cli

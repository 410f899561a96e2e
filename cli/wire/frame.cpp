#include "wire/frame.h"

#include <algorithm>
#include <cstring>

namespace veltrace::cli {
namespace {

/// Capacity that an empty buffer keeps.
constexpr std::size_t kSmallBuffer = std::size_t{1} << 20;

std::uint32_t sizeIn(std::string_view header) {
    std::uint32_t size = 0;
    std::memcpy(&size, header.data(), sizeof size);
    return size;
}

}  // namespace

std::size_t beginFrame(std::string& bytes, std::uint64_t id) {
    const std::size_t begin = bytes.size();
    bytes.append(sizeof(std::uint32_t), '\0');
    Encoder(bytes).number(id);
    return begin;
}

void endFrame(std::string& bytes, std::size_t begin) {
    const auto size = static_cast<std::uint32_t>(bytes.size() - begin - kFrameHeader);
    std::memcpy(bytes.data() + begin, &size, sizeof size);
}

char* FrameBuffer::room(std::size_t size) {
    if (begin_ > 0) {
        std::memmove(bytes_.data(), bytes_.data() + begin_, pending());
        end_ -= begin_;
        begin_ = 0;
    }
    if (bytes_.size() < end_ + size) {
        // All at once: a string that grows by itself doubles. Untouched memory costs nothing.
        bytes_.reserve(std::max(announced(), end_) + size);
        bytes_.resize(end_ + size);
    }
    return bytes_.data() + end_;
}

std::optional<Frame> FrameBuffer::next() {
    const std::string_view bytes = waiting();
    if (bytes.size() < kFrameHeader) {
        if (bytes.empty() && bytes_.size() > kSmallBuffer) {
            std::string().swap(bytes_);  // an assignment would keep the memory
            begin_ = end_ = 0;
        }
        return std::nullopt;
    }
    const std::size_t size = sizeIn(bytes);
    if (size > maxPayload_) {
        throw BadFrame("a frame is larger than allowed");
    }
    if (bytes.size() - kFrameHeader < size) {
        return std::nullopt;
    }
    begin_ += kFrameHeader + size;
    return Frame{Decoder(bytes.substr(sizeof(std::uint32_t))).number(),
                 bytes.substr(kFrameHeader, size)};
}

std::size_t FrameBuffer::announced() const {
    return pending() < kFrameHeader ? 0 : kFrameHeader + sizeIn(waiting());
}

}  // namespace veltrace::cli

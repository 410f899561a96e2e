#include "names/record_lines.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace veltrace::cli {
namespace {

constexpr std::size_t kLineBlock = std::size_t{1} << 18;

}  // namespace

bool RecordLines::skipLine() {
    while (fill()) {
        const auto rest = block_.begin() + static_cast<std::ptrdiff_t>(position_);
        const auto newline = std::find(rest, block_.end(), '\n');
        position_ = static_cast<std::size_t>(newline - block_.begin());
        if (newline != block_.end()) {
            ++position_;
            return true;
        }
    }
    return false;
}

RecordLines::Ch RecordLines::Peek() {
    return fill() && block_[position_] != '\n' ? block_[position_] : '\0';
}

RecordLines::Ch RecordLines::Take() {
    const Ch c = Peek();
    if (c != '\0') {
        ++position_;
    }
    return c;
}

bool RecordLines::fill() {
    if (position_ < block_.size()) {
        return true;
    }
    position_ = 0;
    ssize_t size = -1;
    do {
        block_.resize(kLineBlock);
        size = read(file_.get(), block_.data(), block_.size());
    } while (size < 0 && errno == EINTR);
    if (size < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    block_.resize(static_cast<std::size_t>(size));
    return size > 0;
}

}  // namespace veltrace::cli

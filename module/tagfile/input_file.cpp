#include "tagfile/input_file.h"

#include <algorithm>
#include <cstring>

namespace veltrace::module {

namespace {

// Fits the directories of a photograph and their values; more would cost more than it saves.
constexpr std::size_t kWindowBytes = 16384;

}  // namespace

bool InputFile::open(const char* fileName, std::int64_t size) {
    stream_.reset(fopen64(fileName, "rb"));
    if (!stream_) {
        return false;
    }
    size_ = size;
    window_ = std::make_unique_for_overwrite<std::byte[]>(kWindowBytes);
    return true;
}

bool InputFile::close() {
    std::FILE* stream = stream_.release();
    *this = {};
    return stream == nullptr || std::fclose(stream) == 0;
}

std::int64_t InputFile::streamPosition() const {
    if (!end_) {
        const std::int64_t end = std::ftell(stream());
        if (end == -1) {
            return -1;
        }
        end_ = end;
    }
    return *end_;
}

std::int64_t InputFile::position() const {
    const std::int64_t end = streamPosition();
    return end == -1 ? -1 : end - static_cast<std::int64_t>(filled_ - used_);
}

bool InputFile::seek(std::int64_t position) {
    const std::int64_t end = streamPosition();
    const std::int64_t begin = end - static_cast<std::int64_t>(filled_);
    if (end != -1 && position >= begin && position <= end) {
        used_ = static_cast<std::size_t>(position - begin);
        return true;
    }
    if (std::fseek(stream(), position, SEEK_SET) == -1) {
        return false;
    }
    filled_ = used_ = 0;
    sawEnd_ = false;
    end_ = position;
    return true;
}

bool InputFile::skip(std::int64_t distance) {
    const std::int64_t from = position();
    return from != -1 && seek(from + distance);
}

std::size_t InputFile::read(void* items, std::size_t size, std::size_t count) {
    auto* const bytes = static_cast<std::byte*>(items);
    const std::size_t wanted = size * count;
    std::size_t taken = take(bytes, wanted);
    const std::size_t missing = wanted - taken;
    if (missing >= kWindowBytes) {
        filled_ = used_ = 0;
        taken += readStream(bytes + taken, missing);
    } else if (missing > 0) {
        fill(missing);
        taken += take(bytes + taken, missing);
    }
    return taken / size;
}

std::size_t InputFile::take(std::byte* bytes, std::size_t count) {
    const std::size_t taken = std::min(count, filled_ - used_);
    std::copy_n(window_.get() + used_, taken, bytes);
    used_ += taken;
    return taken;
}

/// Refills the window with at least `wanted` bytes, if the file has them.
void InputFile::fill(std::size_t wanted) {
    // Asking for more than is left would cost a second read to find the end.
    const std::int64_t ahead = std::max<std::int64_t>(size_ - streamPosition(), 0);
    const std::size_t likely = std::min(kWindowBytes, static_cast<std::size_t>(ahead));
    filled_ = readStream(window_.get(), std::max(wanted, likely));
    used_ = 0;
}

std::size_t InputFile::readStream(std::byte* bytes, std::size_t count) {
    if (sawEnd_) {
        // The C library stays at the end of the file until a seek.
        static_cast<void>(std::fseek(stream(), streamPosition(), SEEK_SET));
    }
    const std::size_t taken = std::fread(bytes, 1, count, stream());
    sawEnd_ = taken < count;
    if (end_) {
        *end_ += static_cast<std::int64_t>(taken);
    }
    return taken;
}

}  // namespace veltrace::module

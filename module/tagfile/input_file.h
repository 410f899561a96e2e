// A file to read from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>

namespace veltrace::module {

/// Owns an open file and a window onto it. Tables and their values lie close together, so most
/// moves and reads stay inside the window and cost no call of the system.
class InputFile {
public:
    /// Opens a file of `size` bytes, as far as is known, for binary reading. The file that was open
    /// must have been closed. False when the system refuses.
    [[nodiscard]] bool open(const char* fileName, std::int64_t size);

    /// False when the system could not close the file properly. It is gone either way.
    [[nodiscard]] bool close();

    /// The open stream, whose own position is the end of the window; null when nothing is open.
    [[nodiscard]] std::FILE* stream() const { return stream_.get(); }

    /// The absolute position; -1 when the system does not tell.
    [[nodiscard]] std::int64_t position() const;
    /// Moves to an absolute position, or by a distance; false when the system refuses.
    [[nodiscard]] bool seek(std::int64_t position);
    [[nodiscard]] bool skip(std::int64_t distance);

    /// Reads `count` items of `size` bytes, as fread does: gives the number of whole items read,
    /// fewer than `count` at the end of the file.
    [[nodiscard]] std::size_t read(void* items, std::size_t size, std::size_t count);

private:
    struct CloseStream {
        void operator()(std::FILE* stream) const {
            static_cast<void>(std::fclose(stream));  // only on the way out of an error
        }
    };

    [[nodiscard]] std::size_t take(std::byte* bytes, std::size_t count);
    void fill(std::size_t wanted);
    std::size_t readStream(std::byte* bytes, std::size_t count);
    [[nodiscard]] std::int64_t streamPosition() const;

    std::unique_ptr<std::FILE, CloseStream> stream_;
    std::int64_t size_ = 0;
    std::unique_ptr<std::byte[]> window_;
    std::size_t filled_ = 0;
    std::size_t used_ = 0;  // of what is filled
    bool sawEnd_ = false;   // by the last read of the stream
    // Where the stream is, once the system has told.
    mutable std::optional<std::int64_t> end_;
};

}  // namespace veltrace::module

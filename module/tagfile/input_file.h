// A file read through a window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>

namespace veltrace::module {

/// Owns an open file and a window onto it. Tables and their values lie close together, so most
/// seeks and reads stay inside the window and need no system call.
class InputFile {
public:
    /// Opens a file for binary reading; `size` is its expected size, which may be wrong. A file
    /// that was open must be closed first. Returns false on failure.
    [[nodiscard]] bool open(const char* fileName, std::int64_t size);

    /// Returns false if the file was not closed properly. The stream is gone either way.
    [[nodiscard]] bool close();

    /// The open stream, whose own position is the end of the window; null if no file is open.
    [[nodiscard]] std::FILE* stream() const { return stream_.get(); }

    /// The absolute position; -1 if the system does not report it.
    [[nodiscard]] std::int64_t position() const;
    /// Seeks to an absolute position, or by a distance. Returns false on failure.
    [[nodiscard]] bool seek(std::int64_t position);
    [[nodiscard]] bool skip(std::int64_t distance);

    /// Reads `count` items of `size` bytes. Returns the number of whole items read, fewer than
    /// `count` at the end of the file.
    [[nodiscard]] std::size_t read(void* items, std::size_t size, std::size_t count);

private:
    struct CloseStream {
        void operator()(std::FILE* stream) const {
            static_cast<void>(std::fclose(stream));  // only while an error unwinds
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
    bool sawEnd_ = false;   // in the last read of the stream
    // The stream's position, once known.
    mutable std::optional<std::int64_t> end_;
};

}  // namespace veltrace::module

// A file under test, open for reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <utility>

#include "support/memory_file.h"
#include "tagfile/input_file.h"

namespace veltrace::test {

using namespace module;

/// No two windows onto it are equal: 251 is prime.
inline Bytes countingBytes(std::size_t size) {
    Bytes content(size);
    for (std::size_t i = 0; i < size; ++i) {
        content[i] = static_cast<std::uint8_t>(i % 251);
    }
    return content;
}

/// Reads up to `count` bytes.
inline Bytes readBytes(InputFile& input, std::size_t count) {
    Bytes bytes(count);
    bytes.resize(input.read(bytes.data(), 1, count));
    return bytes;
}

/// A memory file and an `InputFile` that has opened it.
class OpenedFile {
public:
    /// `statedSize` replaces the true size.
    explicit OpenedFile(Bytes content, std::optional<std::int64_t> statedSize = std::nullopt)
        : content_(std::move(content)), file_(content_) {
        const auto size = static_cast<std::int64_t>(content_.size());
        EXPECT_TRUE(input_.open(file_.name().c_str(), statedSize.value_or(size)));
    }
    InputFile& operator*() { return input_; }
    InputFile* operator->() { return &input_; }
    [[nodiscard]] const MemoryFile& file() const { return file_; }

    /// Reads `count` bytes, which must be those of the content at `position`, the input's position.
    void check(std::int64_t position, std::size_t count) {
        const auto begin = content_.begin() + position;
        EXPECT_EQ(input_.position(), position);
        EXPECT_EQ(readBytes(input_, count), Bytes(begin, begin + static_cast<std::int64_t>(count)))
            << count << " bytes at " << position;
        EXPECT_EQ(input_.position(), position + static_cast<std::int64_t>(count));
    }

private:
    Bytes content_;
    MemoryFile file_;
    InputFile input_;
};

}  // namespace veltrace::test

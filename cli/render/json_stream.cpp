#include "render/json_stream.h"

#include <fmt/format.h>

namespace veltrace::cli {
namespace {

constexpr unsigned char kC2 = 0xC2;
constexpr unsigned char kDel = 0x7F;
constexpr unsigned char kLastControl = 0x9F;

}  // namespace

void JsonStream::Put(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (afterC2_) {
        afterC2_ = false;
        if (byte <= kLastControl) {
            writeEscaped(byte);
            return;
        }
        write(static_cast<char>(kC2));
    }
    if (byte == kC2) {
        afterC2_ = true;
    } else if (byte == kDel) {
        writeEscaped(byte);
    } else {
        write(c);
    }
}

void JsonStream::write(char c) {
    // Straight to the buffer: `out.put` does far more work for each byte.
    if (out_ && out_.rdbuf()->sputc(c) == std::char_traits<char>::eof()) {
        out_.setstate(std::ios::badbit);
    }
}

void JsonStream::writeEscaped(unsigned char code) {
    for (const char c : fmt::format("\\u{:04x}", code)) {
        write(c);
    }
}

}  // namespace veltrace::cli

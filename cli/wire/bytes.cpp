#include "wire/bytes.h"

#include <cstring>

namespace veltrace::cli {

void Encoder::number(std::uint64_t value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    bytes_.append(bytes, sizeof value);
}

void Encoder::text(std::string_view text) {
    number(text.size());
    bytes_.append(text);
}

std::uint64_t Decoder::number() {
    const std::string_view bytes = take(sizeof(std::uint64_t));
    std::uint64_t value = 0;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

std::uint64_t Decoder::numberUpTo(std::uint64_t largest) {
    const std::uint64_t value = number();
    if (value > largest) {
        throw BadFrame("a number is out of its range");
    }
    return value;
}

std::string_view Decoder::text() {
    return take(number());
}

void Decoder::end() const {
    if (!bytes_.empty()) {
        throw BadFrame("there are bytes after the last value");
    }
}

std::string_view Decoder::take(std::uint64_t size) {
    if (size > bytes_.size()) {
        throw BadFrame("the bytes end within a value");
    }
    const std::string_view taken = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return taken;
}

}  // namespace veltrace::cli

#include "names/image_signature.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <unistd.h>

namespace veltrace::cli {
namespace {

using namespace std::string_view_literals;

// The fourth is what the module accepts as big-endian BigTIFF; it rejects the published "MM" 00 2B.
constexpr std::array kSignatures = {"\xff\xd8"sv, "II\x2a\0"sv, "MM\0\x2a"sv, "MM\x2b\0"sv,
                                    "II\x2b\0"sv};
constexpr std::size_t kMaxSignature = 4;

}  // namespace

bool isImageStart(std::string_view firstBytes) {
    return std::ranges::any_of(kSignatures, [firstBytes](std::string_view signature) {
        return firstBytes.starts_with(signature);
    });
}

bool mayBeImage(int descriptor) {
    std::array<char, kMaxSignature> bytes{};
    const ssize_t size = pread(descriptor, bytes.data(), bytes.size(), 0);
    return size < 0 || isImageStart({bytes.data(), static_cast<std::size_t>(size)});
}

}  // namespace veltrace::cli

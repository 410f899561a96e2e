// What is compared: programs' ways to read the metadata of one file, behind one interface.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace veltrace::bench {

/// The kind of a file, by its first bytes.
enum class Format { jpeg, classicTiff, bigTiff, other };

/// What a reader got out of one file, or of many.
struct Delivered {
    std::uint64_t directories = 0;
    std::uint64_t entries = 0;  ///< whose value arrived; values that the reader makes up are none
    std::uint64_t values = 0;   ///< numbers; a rational is one, and texts have none
    std::uint64_t refused = 0;  ///< files that the reader gave up

    friend bool operator==(const Delivered&, const Delivered&) = default;
};

[[nodiscard]] constexpr Delivered refusal() {
    return {.directories = 0, .entries = 0, .values = 0, .refused = 1};
}

/// A way to read. Whatever it reads, it brings all numbers into memory as doubles, since the module
/// does, and prints nothing.
class Reader {
public:
    virtual ~Reader() = default;

    [[nodiscard]] virtual std::string_view name() const = 0;
    [[nodiscard]] virtual bool knows(Format format) const = 0;

    /// Reads the file and counts what came of it. Only this may be slowed down by counting.
    [[nodiscard]] virtual Delivered count(const std::string& path) = 0;

    /// Reads the file and lets go of everything: what is timed.
    virtual void read(const std::string& path) { static_cast<void>(count(path)); }
};

using Readers = std::vector<std::unique_ptr<Reader>>;

[[nodiscard]] Format formatOf(const std::string& path);
/// "jpeg", "classic", "bigtiff" or "other".
[[nodiscard]] std::string_view nameOf(Format format);

/// All readers, the module first, which is loaded from `modulePath`. Throws `zephra::LoadError`.
[[nodiscard]] Readers allReaders(const std::string& modulePath);

}  // namespace veltrace::bench

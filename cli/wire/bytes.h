// Values as bytes between the processes of one run.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace veltrace::cli {

/// Received bytes are not what their sender should have sent.
class BadFrame : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Appends values to bytes. Both processes run on one machine, so numbers keep its byte order.
class Encoder {
public:
    explicit Encoder(std::string& bytes) : bytes_(bytes) {}

    void number(std::uint64_t value);
    /// Any bytes, preceded by their number.
    void text(std::string_view text);

private:
    std::string& bytes_;
};

/// Takes values from the front of untrusted bytes. Throws BadFrame.
class Decoder {
public:
    explicit Decoder(std::string_view bytes) : bytes_(bytes) {}

    [[nodiscard]] std::uint64_t number();
    /// A number that is at most `largest`.
    [[nodiscard]] std::uint64_t numberUpTo(std::uint64_t largest);
    /// Part of the bytes.
    [[nodiscard]] std::string_view text();
    [[nodiscard]] bool flag() { return numberUpTo(1) == 1; }

    /// Throws when bytes are left.
    void end() const;

private:
    [[nodiscard]] std::string_view take(std::uint64_t size);

    std::string_view bytes_;
};

}  // namespace veltrace::cli

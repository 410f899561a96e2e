// Where JSON goes on its way to a C++ stream.
#pragma once

#include <ostream>

namespace veltrace::cli {

/// The output stream that RapidJSON's Writer writes to, a byte at a time. JSON allows DEL and the
/// C1 controls as they are, a terminal does not, so they leave as \u007f and \u0080 to \u009f; they
/// can only stand inside strings. The bytes put must be valid UTF-8. A failed write sets badbit of
/// `out`, and the rest is dropped.
class JsonStream {
public:
    using Ch = char;

    explicit JsonStream(std::ostream& out) : out_(out) {}

    void Put(char c);  // NOLINT(readability-identifier-naming): RapidJSON's name
    void Flush() {}    // NOLINT(readability-identifier-naming): RapidJSON's name

private:
    void write(char c);
    void writeEscaped(unsigned char code);

    std::ostream& out_;
    bool afterC2_ = false;  // C2 leads every character from U+0080 to U+00BF
};

}  // namespace veltrace::cli

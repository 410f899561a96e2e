// Escape sequences for colour.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace veltrace::cli {

inline constexpr std::string_view kBold = "\x1b[1m";
inline constexpr std::string_view kDim = "\x1b[2m";
inline constexpr std::string_view kCyan = "\x1b[36m";
inline constexpr std::string_view kPlain = "\x1b[0m";
inline constexpr std::array kStyles{kBold, kDim, kCyan, kPlain};

/// Marks texts up, or returns them unchanged without colour. Marked text ends plain.
class TextStyle {
public:
    explicit TextStyle(bool hasColour) : hasColour_(hasColour) {}

    [[nodiscard]] std::string heading(std::string_view text) const { return marked(kBold, text); }
    [[nodiscard]] std::string name(std::string_view text) const { return marked(kCyan, text); }
    [[nodiscard]] std::string aside(std::string_view text) const { return marked(kDim, text); }

private:
    [[nodiscard]] std::string marked(std::string_view style, std::string_view text) const {
        std::string result(text);
        if (hasColour_) {
            result.insert(0, style).append(kPlain);
        }
        return result;
    }

    bool hasColour_;
};

}  // namespace veltrace::cli

#include "message_format.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <link.h>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace zephra {

namespace {

/// One conversion of a format, such as "%-5.3lu".
struct Conversion {
    std::string_view flags;
    int width = 0;
    int precision = -1;       // -1: none given
    std::string_view length;  // "", "l", "ll" or "z"
    char letter = '\0';
};

/// Reads a conversion; each step removes its part from the front of the text.
class ConversionReader {
public:
    /// `text` begins after the '%'.
    explicit ConversionReader(std::string_view text) : rest_(text) {}

    /// Nothing when it is not one of the known conversions.
    std::optional<Conversion> read() {
        Conversion conversion;
        conversion.flags = takeFlags();
        conversion.width = takeNumber();
        if (takeIf(".")) {
            conversion.precision = takeNumber();
        }
        conversion.length = takeLength();
        const std::string_view letters = conversion.length.empty() ? "scdiuxfg%" : "diux";
        if (rest_.empty() || letters.find(rest_.front()) == std::string_view::npos) {
            return std::nullopt;
        }
        conversion.letter = rest_.front();
        rest_.remove_prefix(1);
        return conversion;
    }

    /// What follows the conversion.
    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    bool takeIf(std::string_view prefix) {
        const bool found = rest_.starts_with(prefix);
        rest_.remove_prefix(found ? prefix.size() : 0);
        return found;
    }

    std::string_view takeFlags() {
        const std::size_t count = std::min(rest_.find_first_not_of("-+ #0"), rest_.size());
        const std::string_view flags = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return flags;
    }

    int takeNumber() {
        int number = 0;
        for (; !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
             rest_.remove_prefix(1)) {
            number = std::min(number * 10 + (rest_.front() - '0'), kMaxWidth);
        }
        return number;
    }

    std::string_view takeLength() {
        for (const std::string_view length : {"ll", "l", "z"}) {
            if (takeIf(length)) {
                return length;
            }
        }
        return {};
    }

    std::string_view rest_;
};

/// Interprets a trusted format.
class Formatter {
public:
    explicit Formatter(std::va_list arguments) { va_copy(arguments_, arguments); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;
    ~Formatter() { va_end(arguments_); }

    std::string format(std::string_view text) {
        while (!text.empty() && out_.size() < kMaxFormattedLength) {
            const std::size_t plain = std::min(text.find('%'), text.size());
            out_ += text.substr(0, plain);
            text.remove_prefix(plain);
            if (!text.empty()) {
                text = convert(text);
            }
        }
        out_.resize(std::min(out_.size(), kMaxFormattedLength));
        return std::move(out_);
    }

private:
    /// Prints the conversion at the front of `text`; returns what is left to interpret.
    std::string_view convert(std::string_view text) {
        ConversionReader reader(text.substr(1));
        const std::optional<Conversion> conversion = reader.read();
        if (!conversion) {
            out_ += text;
            return {};
        }
        switch (conversion->letter) {
            case '%':
                out_ += '%';
                break;
            case 's':
                printString(*conversion);
                break;
            case 'c':
                print(*conversion, "", va_arg(arguments_, int));
                break;
            case 'f':
            case 'g':
                print(*conversion, "", va_arg(arguments_, double));
                break;
            case 'd':
            case 'i':
                print(*conversion, "ll", takeSigned(conversion->length));
                break;
            default:
                print(*conversion, "ll", takeUnsigned(conversion->length));
        }
        return reader.rest();
    }

    void printString(Conversion conversion) {
        const char* const string = va_arg(arguments_, const char*);
        if (conversion.precision < 0) {
            conversion.precision = kMaxFormattedLength;
        }
        print(conversion, "", string != nullptr ? string : "(null)");
    }

    long long takeSigned(std::string_view length) {
        if (length == "ll") {
            return va_arg(arguments_, long long);
        }
        if (length == "l") {
            return va_arg(arguments_, long);
        }
        return length == "z" ? va_arg(arguments_, std::ptrdiff_t) : va_arg(arguments_, int);
    }

    unsigned long long takeUnsigned(std::string_view length) {
        if (length == "ll") {
            return va_arg(arguments_, unsigned long long);
        }
        if (length == "l") {
            return va_arg(arguments_, unsigned long);
        }
        return length == "z" ? va_arg(arguments_, std::size_t) : va_arg(arguments_, unsigned);
    }

    /// `length` is the one of `argument`, which may be wider than what was passed.
    template <class Argument>
    void print(const Conversion& conversion, const char* length, Argument argument) {
        const std::string format =
            '%' + std::string(conversion.flags) + "*.*" + length + conversion.letter;
        const auto printTo = [&](char* buffer, std::size_t room) {
            return std::snprintf(buffer, room, format.c_str(), conversion.width,
                                 conversion.precision, argument);
        };
        const int size = printTo(nullptr, 0);
        if (size < 0) {
            return;
        }
        std::string printed(static_cast<std::size_t>(size) + 1, '\0');
        printTo(printed.data(), printed.size());
        printed.pop_back();  // the terminator
        out_ += printed;
    }

    std::va_list arguments_{};
    std::string out_;
};

bool isReadOnlyLoadOf(const dl_phdr_info& object, const ElfW(Phdr) & segment,
                      std::uintptr_t address) {
    return segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0 &&
           address >= object.dlpi_addr + segment.p_vaddr &&
           address - object.dlpi_addr - segment.p_vaddr < segment.p_memsz;
}

/// True when `text` lies in memory that was mapped read-only from a program or library file.
bool isLiteral(const char* text) {
    auto address = reinterpret_cast<std::uintptr_t>(text);
    const auto visit = [](dl_phdr_info* object, std::size_t /*size*/, void* wanted) {
        const std::span segments(object->dlpi_phdr, object->dlpi_phnum);
        const bool found = std::ranges::any_of(segments, [&](const auto& segment) {
            return isReadOnlyLoadOf(*object, segment, *static_cast<std::uintptr_t*>(wanted));
        });
        return found ? 1 : 0;
    };
    return dl_iterate_phdr(visit, &address) != 0;
}

}  // namespace

std::string formatMessage(const char* format, std::va_list arguments) {
    if (format == nullptr) {
        return {};
    }
    // Without a conversion there is nothing to format, and no need to find out where the text is.
    const std::string_view text(format);
    if (text.find('%') == std::string_view::npos && text.size() <= kMaxFormattedLength) {
        return format;
    }
    return isLiteral(format) ? Formatter(arguments).format(format) : format;
}

}  // namespace zephra

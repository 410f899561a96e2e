// A host whose C++ locale writes numbers in another way.
#pragma once

#include <locale>
#include <string>

namespace veltrace::test {

/// Writes 1234.5 as 1.2.3.4,5.
class Grouping : public std::numpunct<char> {
protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\1"; }
};

[[nodiscard]] inline std::locale groupingLocale() {
    return {std::locale::classic(), new Grouping};
}

/// While one lives, this is the global C++ locale.
class GlobalGroupingLocale {
public:
    GlobalGroupingLocale() = default;
    GlobalGroupingLocale(const GlobalGroupingLocale&) = delete;
    GlobalGroupingLocale& operator=(const GlobalGroupingLocale&) = delete;
    ~GlobalGroupingLocale() { std::locale::global(previous_); }

private:
    std::locale previous_ = std::locale::global(groupingLocale());
};

}  // namespace veltrace::test

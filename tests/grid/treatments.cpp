#include "grid/treatments.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "grid/words.h"

namespace veltrace::test {

namespace {

std::string wordOf(std::span<const WordRow> rows, std::int64_t code, std::string_view otherwise) {
    for (const WordRow& row : rows) {
        if (row.code == code) {
            return std::string(row.word);
        }
    }
    return std::string(otherwise);
}

void treatGrayResponseUnit(Shown& shown) {
    constexpr double kMultipliers[] = {0.1, 0.01, 0.001, 0.0001, 0.00001};
    if (shown.numbers.empty()) {
        return;
    }
    const std::int64_t code = codeOf(shown.numbers.front());
    if (code >= 1 && code <= 5) {
        shown.numbers.front() = kMultipliers[code - 1];
    } else {
        shown.word = "Unknown";
    }
}

void treatXmp(Shown& shown) {
    for (const double number : shown.numbers) {
        shown.word.push_back(static_cast<char>(codeOf(number) & 0xFF));
    }
}

}  // namespace

std::int64_t codeOf(double number) {
    const double whole = std::trunc(number);
    const bool fits = whole >= -2147483648.0 && whole <= 2147483647.0;
    return fits ? static_cast<std::int64_t>(whole) : std::int64_t{-2147483648};
}

void treat(std::uint16_t tag, double offset, Shown& shown) {
    for (const WordTable& table : kWordTables) {
        if (table.tag == tag && !shown.numbers.empty()) {
            shown.word = wordOf(table.rows, codeOf(shown.numbers.front()), table.otherwise);
        }
    }
    if (tag == 270 && !shown.text.empty()) {
        shown.text.pop_back();
    } else if (tag == 290) {
        treatGrayResponseUnit(shown);
    } else if (tag == 700) {
        treatXmp(shown);
    } else if (tag == 34675) {
        shown.numbers = {offset};
    }
}

Expected colormapOf(const std::vector<double>& numbers) {
    if (numbers.empty()) {
        return {};
    }
    Expected expected;
    expected.kind = Expected::Kind::numbers;
    expected.rows = numbers.size() / 3;
    expected.columns = 3;
    for (std::size_t i = 0; i < expected.rows * 3; ++i) {
        expected.numbers.push_back(numbers[i] / 65535.0);
    }
    return expected;
}

Expected sampleFormatOf(const std::vector<double>& numbers) {
    if (std::ranges::any_of(numbers, [](double n) { return n < 1.0 || n > 6.0; })) {
        return Expected::string("Unknown");
    }
    std::vector<std::string> words;
    for (const double number : numbers) {
        words.push_back(wordOf(kSampleFormatWords, codeOf(number), "Unknown"));
    }
    return words.size() == 1 ? Expected::string(words.front()) : Expected::cells(words);
}

Expected colorTypeOf(std::int64_t photometric) {
    const std::string word = wordOf(kColorTypes, photometric, "");
    return word.empty() ? Expected::number(static_cast<double>(photometric))
                        : Expected::string(word);
}

}  // namespace veltrace::test

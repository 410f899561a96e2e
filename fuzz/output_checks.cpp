#include "output_checks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

#include "finding.h"

namespace veltrace::fuzz {
namespace {

/// Beyond ASCII. Text and csv escape those that turn the direction of writing, too.
constexpr std::array<std::string_view, 2> kSeparators{"\u2028", "\u2029"};
constexpr std::array<std::string_view, 12> kTurns{"\u061c", "\u200e", "\u200f", "\u202a",
                                                  "\u202b", "\u202c", "\u202d", "\u202e",
                                                  "\u2066", "\u2067", "\u2068", "\u2069"};
constexpr std::array<std::string_view, 3> kMarks{"\x1b[1m", "\x1b[2m", "\x1b[36m"};
constexpr std::string_view kPlain = "\x1b[0m";

template <std::size_t N>
bool hasAny(std::string_view bytes, const std::array<std::string_view, N>& characters) {
    return std::ranges::any_of(characters, [bytes](std::string_view character) {
        return bytes.find(character) != std::string_view::npos;
    });
}

bool hasC1(std::string_view bytes) {
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        const auto second = static_cast<unsigned char>(bytes[i]);
        if (bytes[i - 1] == '\xC2' && second >= 0x80 && second <= 0x9F) {
            return true;
        }
    }
    return false;
}

bool isHarmless(std::string_view line) {
    return !hasControl(line) && !hasAny(line, kTurns) && isUnicode(line);
}

/// The line without its marks.
std::string unmarked(std::string_view line) {
    std::string text;
    bool isMarked = false;
    while (!line.empty()) {
        const auto* const mark = std::ranges::find_if(
            kMarks, [line](std::string_view candidate) { return line.starts_with(candidate); });
        if (mark != kMarks.end() || line.starts_with(kPlain)) {
            isMarked = mark != kMarks.end();
            line.remove_prefix(isMarked ? mark->size() : kPlain.size());
        } else {
            text += line.front();
            line.remove_prefix(1);
        }
    }
    require(!isMarked, "a mark of text reaches beyond its line");
    return text;
}

/// Takes one cell and the separator behind it.
std::string takeCell(std::string_view& row) {
    std::string cell;
    if (!row.starts_with('"')) {
        const std::size_t end = std::min(row.find(','), row.size());
        cell = row.substr(0, end);
        require(cell.find('"') == std::string::npos, "a cell without quotes has a quote");
        row.remove_prefix(end);
        return cell;
    }
    for (row.remove_prefix(1); !row.empty(); row.remove_prefix(1)) {
        if (row.front() == '"') {
            row.remove_prefix(1);
            if (!row.starts_with('"')) {
                return cell;
            }
        }
        cell += row.front();
    }
    require(false, "a cell does not end");
    return cell;
}

/// The bytes that text and csv show as `shown`.
std::string unescaped(std::string_view shown) {
    std::string bytes;
    while (!shown.empty()) {
        const char next = shown.size() > 1 && shown.front() == '\\' ? shown[1] : '\0';
        std::size_t length = 2;
        if (next == '\0') {
            require(shown.front() != '\\', "an escape does not end");
            bytes += shown.front();
            length = 1;
        } else if (next == 'x') {
            bytes += static_cast<char>(std::stoi(std::string(shown.substr(2, 2)), nullptr, 16));
            length = 4;
        } else {
            const std::size_t kind = std::string_view("\\nrt").find(next);
            require(kind != std::string_view::npos, "there is no such escape");
            bytes += "\\\n\r\t"[kind];
        }
        shown.remove_prefix(length);
    }
    return bytes;
}

bool isNumber(const std::string& text) {
    char* end = nullptr;
    std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0';
}

bool isNonfinite(const Json& entry) {
    return entry.is_object() && entry.size() == 2 &&
           entry.at("at").get_ref<const std::string&>().starts_with("/info/") &&
           (entry.at("is") == "NaN" || entry.at("is") == "Infinity" ||
            entry.at("is") == "-Infinity");
}

bool isPlace(const Json& entry) {
    return entry.is_string() && entry.get_ref<const std::string&>().starts_with('/');
}

bool isOmission(const Json& entry) {
    return entry.is_object() && entry.size() == 2 &&
           entry.at("at").get_ref<const std::string&>().starts_with("/info/") &&
           entry.at("size").size() == 2 && entry.at("size")[0].is_number_unsigned() &&
           entry.at("size")[1].is_number_unsigned();
}

}  // namespace

bool hasControl(std::string_view bytes) {
    return hasC1(bytes) || hasAny(bytes, kSeparators) || std::ranges::any_of(bytes, [](char c) {
               return static_cast<unsigned char>(c) < 0x20 || c == '\x7f';
           });
}

bool isUnicode(std::string_view bytes) {
    try {
        static_cast<void>(Json(bytes).dump());
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

void requireHarmlessText(std::string_view text, bool hasColour) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        require(end != std::string_view::npos, "the last line of text does not end");
        const std::string_view line = text.substr(0, end);
        require(isHarmless(hasColour ? unmarked(line) : std::string(line)),
                "a terminal would obey a line of text");
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string> cellsOf(std::string_view row) {
    require(row.ends_with('\n'), "a row of csv does not end");
    row.remove_suffix(1);
    require(isHarmless(row), "a terminal would obey a row of csv");
    std::vector<std::string> cells{takeCell(row)};
    while (!row.empty()) {
        require(row.front() == ',', "something stands between a cell and the next");
        row.remove_prefix(1);
        cells.push_back(takeCell(row));
    }
    return cells;
}

void requireCell(const std::string& cell, const std::string& bytes) {
    const bool couldRun =
        !bytes.empty() && std::string_view("=+-@").find(bytes[0]) != std::string_view::npos;
    const bool isGuarded = couldRun && cell.starts_with('\'');
    require(!couldRun || isGuarded || isNumber(cell), "a spreadsheet would run a cell");
    require(unescaped(isGuarded ? cell.substr(1) : cell) == bytes,
            "a cell has other bytes than went in");
}

void requireRecord(const Json& record, bool listsOmitted) {
    std::vector<std::string> names{"v",
                                   "seq",
                                   record.contains("path") ? "path" : "path_b64",
                                   "status",
                                   "error",
                                   "warnings",
                                   "warnings_dropped",
                                   "elapsed_us",
                                   "info",
                                   "nonfinite",
                                   "latin1"};
    if (listsOmitted) {
        names.emplace_back("omitted");
    }
    std::vector<std::string> members;
    for (const auto& member : record.items()) {
        members.push_back(member.key());
    }
    require(members == names, "a record has other members than it should");
    require(record["info"].is_array(), "the directories of a record are no list");
    require(std::ranges::all_of(record["nonfinite"], isNonfinite),
            "nonfinite lists something else than numbers");
    require(std::ranges::all_of(record["latin1"], isPlace),
            "latin1 lists something else than places");
    require(!listsOmitted || std::ranges::all_of(record["omitted"], isOmission),
            "omitted lists something else than sizes");
}

}  // namespace veltrace::fuzz

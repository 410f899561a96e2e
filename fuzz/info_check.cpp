#include "info_check.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "finding.h"

namespace veltrace::fuzz {
namespace {

using Kind = MadeValue::Kind;

std::string step(std::string_view name) {
    std::string escaped = "/";
    for (const char c : charactersOf(name)) {
        escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return escaped;
}

std::string step(std::size_t index) {
    std::string place = "/";
    place += std::to_string(index);
    return place;
}

const char* nameOf(double nonfinite) {
    return std::isnan(nonfinite) ? "NaN" : nonfinite > 0 ? "Infinity" : "-Infinity";
}

bool isPlainWhole(double number) {
    return std::abs(number) < 0x1p53 && number == std::trunc(number) &&
           !(number == 0 && std::signbit(number));
}

void requireList(const Json& json, std::size_t size) {
    require(json.is_array() && json.size() == size, "a list of values has another length");
}

}  // namespace

Selection Selection::of(const std::vector<std::string>& fields) {
    Selection selection;
    selection.isWhole = fields.empty();
    for (const std::string& field : fields) {
        std::vector<std::string> path{""};
        for (const char c : field) {
            if (c == '.') {
                path.emplace_back();
            } else {
                path.back() += c;
            }
        }
        selection.paths.push_back(std::move(path));
    }
    return selection;
}

Selection Selection::inside(std::string_view name) const {
    Selection next{{}, isWhole};
    for (const auto& path : paths) {
        if (path.front() != name) {
            continue;
        }
        if (path.size() == 1) {
            next.isWhole = true;
        } else {
            next.paths.emplace_back(path.begin() + 1, path.end());
        }
    }
    return next;
}

void InfoCheck::checkText(std::string_view bytes, const Json& json, const std::string& place) {
    require(json.is_string(), "a text is no text");
    require(json == charactersOf(bytes), "a text has other bytes than went in");
    if (!isUnicode(bytes)) {
        latin1_.push_back(place);
    }
}

void InfoCheck::checkInfo(const MadeValue& output, const Selection& selection) {
    checkDirectories(output, record_.at("info"), selection, "/info");
}

void InfoCheck::checkLists() const {
    require(record_.at("nonfinite") == nonfinite_, "other numbers are listed as not finite");
    require(record_.at("latin1") == latin1_, "other texts are listed as Latin-1");
    require(record_.value("omitted", Json::array()) == omitted_,
            "other values are listed as left out");
}

void InfoCheck::checkValue(const MadeValue& value, const Json& json, const Selection& selection,
                           const std::string& place) {
    const std::size_t count = value.count();
    if (value.kind != Kind::directories && omitLargerThan_ && count > *omitLargerThan_) {
        require(json.is_null(), "a value that should be left out is there");
        omitted_.push_back({{"at", place}, {"size", {value.rows(), count / value.rows()}}});
        return;
    }
    switch (value.kind) {
        case Kind::nothing:
            require(json.is_null(), "nothing is not null");
            break;
        case Kind::text:
            checkText(value.text, json, place);
            break;
        case Kind::cells:
            checkCells(value, json, selection, place);
            break;
        case Kind::directories:
            checkDirectories(value, json, selection, place);
            break;
        default:
            checkArray(value, json, place);
    }
}

void InfoCheck::checkDirectories(const MadeValue& value, const Json& json,
                                 const Selection& selection, const std::string& place) {
    requireList(json, value.count());
    for (std::size_t i = 0; i < value.count(); ++i) {
        checkDirectory(value, i, json[i], selection, place + step(i));
    }
}

void InfoCheck::checkDirectory(const MadeValue& value, std::size_t element, const Json& json,
                               const Selection& selection, const std::string& place) {
    require(json.is_object(), "a directory is no object");
    auto member = json.begin();
    for (std::size_t i = 0; i < value.names.size(); ++i) {
        const Selection inside = selection.inside(value.names[i]);
        const MadeValue& field = value.field(element, i);
        const bool goesOn = field.kind == Kind::directories || field.kind == Kind::cells;
        if (inside.isNothing() || (!inside.isWhole && !goesOn)) {
            continue;
        }
        require(member != json.end(), "a field is missing");
        require(member.key() == charactersOf(value.names[i]), "a field has another name");
        checkValue(field, *member, inside, place + step(value.names[i]));
        ++member;
    }
    require(member == json.end(), "there is a field that was not asked for");
}

void InfoCheck::checkCells(const MadeValue& value, const Json& json, const Selection& selection,
                           const std::string& place) {
    requireList(json, value.count());
    for (std::size_t i = 0; i < value.count(); ++i) {
        checkValue(value.contents[i], json[i], selection, place + step(i));
    }
}

void InfoCheck::checkArray(const MadeValue& value, const Json& json, const std::string& place) {
    const std::size_t count = value.count();
    if (count == 0) {
        require(json.is_null(), "an array without elements is not null");
    } else if (count == 1) {
        checkElement(value, 0, json, place);
    } else if (value.rows() == 1 || value.rows() == count) {
        requireList(json, count);
        for (std::size_t i = 0; i < count; ++i) {
            checkElement(value, i, json[i], place + step(i));
        }
    } else {
        checkMatrix(value, json, place);
    }
}

void InfoCheck::checkMatrix(const MadeValue& value, const Json& json, const std::string& place) {
    const std::size_t rows = value.rows();
    const std::size_t columns = value.count() / rows;
    requireList(json, rows);
    for (std::size_t row = 0; row < rows; ++row) {
        requireList(json[row], columns);
        for (std::size_t column = 0; column < columns; ++column) {
            checkElement(value, column * rows + row, json[row][column],
                         place + step(row) + step(column));
        }
    }
}

void InfoCheck::checkElement(const MadeValue& value, std::size_t index, const Json& json,
                             const std::string& place) {
    if (value.kind == Kind::logical) {
        require(json == Json(value.numbers[index] != 0), "a truth value is another");
    } else {
        checkNumber(value.numbers[index], json, place);
    }
}

void InfoCheck::checkNumber(double number, const Json& json, const std::string& place) {
    if (!std::isfinite(number)) {
        require(json.is_null(), "a number that JSON cannot hold is not null");
        nonfinite_.push_back({{"at", place}, {"is", nameOf(number)}});
        return;
    }
    require(json.is_number(), "a number is no number");
    require(json.is_number_integer() || !isPlainWhole(number),
            "a whole number has a fraction or an exponent");
    const auto read = json.get<double>();
    require(read == number && std::signbit(read) == std::signbit(number),
            "a number reads back as another");
}

}  // namespace veltrace::fuzz

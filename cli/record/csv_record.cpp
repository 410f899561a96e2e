#include "record/csv_record.h"

#include <charconv>
#include <system_error>

#include "render/csv_renderer.h"
#include "render/escape.h"

namespace veltrace::cli {
namespace {

bool isNumber(std::string_view text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

bool isFormula(std::string_view text) {
    return !text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos &&
           !isNumber(text);
}

bool needsQuotes(std::string_view text) {
    return text.starts_with(' ') || text.ends_with(' ') ||
           text.find_first_of("\",\r\n") != std::string_view::npos;
}

std::string inQuotes(std::string_view text) {
    std::string cell = "\"";
    for (const char c : text) {
        cell.append(c == '"' ? 2 : 1, c);
    }
    return cell + '"';
}

void appendRow(std::string& out, const std::vector<std::string>& texts) {
    std::string_view separator;
    for (const std::string& text : texts) {
        out.append(separator).append(csvCell(text));
        separator = ",";
    }
    out += '\n';
}

}  // namespace

std::string csvCell(std::string_view text) {
    std::string cell(isFormula(text) ? 1 : 0, '\'');
    cell += text;
    return needsQuotes(cell) ? inQuotes(cell) : cell;
}

CsvRecordWriter::CsvRecordWriter(const RenderOptions& options) : fields_(csvFields(options)) {}

void CsvRecordWriter::begin(std::string& out) {
    std::vector<std::string> names{"path", "status", "error", "warnings", "directories"};
    for (const std::string& field : fields_) {
        names.push_back(visible(field));
    }
    appendRow(out, names);
}

void CsvRecordWriter::record(const Record& record, std::string& out) {
    const Outcome& outcome = record.outcome;
    std::vector<std::string> texts{
        visible(record.path), std::string(nameOf(outcome.status)),
        outcome.error ? visible(outcome.error->identifier) : "",
        std::to_string(outcome.warnings.size() + outcome.warningsDropped)};
    const std::vector<std::string>& cells = outcome.rendering.cells;
    if (isFailure(outcome.status)) {
        texts.emplace_back("0");  // directories
        texts.resize(texts.size() + fields_.size());
    }
    texts.insert(texts.end(), cells.begin(), cells.end());
    appendRow(out, texts);
}

}  // namespace veltrace::cli

// What holds of all that the command writes, read by code that shares nothing with its writers.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace veltrace::fuzz {

using Json = nlohmann::ordered_json;

/// Whether `bytes` have a control character (C0, DEL, C1) or a separator of lines or paragraphs.
[[nodiscard]] bool hasControl(std::string_view bytes);

/// Whether `bytes` are UTF-8.
[[nodiscard]] bool isUnicode(std::string_view bytes);

/// Ends the process unless a terminal takes `text`, whole lines of the format text, for text and,
/// with `hasColour`, for marks that end within their line.
void requireHarmlessText(std::string_view text, bool hasColour);

/// The cells of `row`, one line of csv. Ends the process unless it is that and nothing else.
[[nodiscard]] std::vector<std::string> cellsOf(std::string_view row);

/// Ends the process unless `cell` shows `bytes`, and so that no spreadsheet runs them.
void requireCell(const std::string& cell, const std::string& bytes);

/// Ends the process unless `record` has the members of a record, in their order, and its lists of
/// places have nothing but places.
void requireRecord(const Json& record, bool listsOmitted);

}  // namespace veltrace::fuzz

// Host values as JSON.
#pragma once

#include <rapidjson/writer.h>
#include <string_view>

#include "zephra/host/value.h"

#include "render/json_stream.h"

namespace veltrace::cli {

using JsonWriter = rapidjson::Writer<JsonStream>;

/// Writes `value`, nested to any depth, as one JSON value:
/// - a structure array as a list of objects, a cell array as a list, in index order;
/// - characters as one string of their low bytes, see `asUtf8`;
/// - numbers and logicals 1 x 1 as one number or boolean, 1 x n and n x 1 as a flat list, m x n as
///   a list of m rows (further dimensions count as columns); NaN and infinities as null;
/// - an empty place and an empty number or logical array as null.
void writeJson(JsonWriter& json, zephra::Value value);

/// Writes the string `bytes`, see `asUtf8`.
void writeJson(JsonWriter& json, std::string_view bytes);

}  // namespace veltrace::cli
